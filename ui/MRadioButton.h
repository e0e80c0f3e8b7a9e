#pragma once
// A radio button: a check box whose completed click selects it in its group.
#include <cstdint>

#include "ui/MCheckboxButton.h"

namespace SASM {

class MRadioGroup;

class MRadioButton : public MCheckboxButton {
 public:
  // Joins group, and is selected there when checked.
  MRadioButton(MWindow* window, const MScale3Data* normal, const MScale3Data* hover, const MScale3Data* checkedNormal,
               const MScale3Data* checkedHover, bool checked, int32_t value, MRadioGroup* group);

  int32_t value;
  MRadioGroup* group;

 protected:
  void Click() override;
};

// A 15-pixel radio button of the skin, in group with its value.
MRadioButton* MakeRadio(MWindow* window, void* skin, bool checked, int32_t value, MRadioGroup* group);

}  // namespace SASM
