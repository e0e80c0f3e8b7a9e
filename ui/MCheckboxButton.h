#pragma once
// A check box: a button whose looks follow checked, which a completed click inverts.
#include "ui/MButton.h"

namespace SASM {

class MCheckboxButton : public MButton {
 public:
  MCheckboxButton(MWindow* window, const MScale3Data* normal, const MScale3Data* hover, const MScale3Data* pressed,
                  const MScale3Data* disabled, const MScale3Data* checkedNormal, const MScale3Data* checkedHover,
                  const MScale3Data* checkedPressed, bool checked);

  const MScale3Data* checkedNormalData;
  const MScale3Data* checkedHoverData;
  const MScale3Data* checkedPressedData;
  uint8_t checked = 0;

  // Gives the button the look of state for the current value.
  void ShowLook(Look look) { SetLook(look); }

 protected:
  const MScale3Data* LookData(Look look) const override;
  void Click() override;
};

// A 15-pixel check box of the skin, its pieces in the left slot only.
MCheckboxButton* MakeCheckbox(MWindow* window, void* skin, bool checked);

}  // namespace SASM
