#include "ui/MCheckboxButton.h"

namespace SASM {

MCheckboxButton::MCheckboxButton(MWindow* w, const MScale3Data* normal, const MScale3Data* hover,
                                 const MScale3Data* pressed, const MScale3Data* disabled,
                                 const MScale3Data* checkedNormal, const MScale3Data* checkedHover,
                                 const MScale3Data* checkedPressed, bool isChecked)
    : MButton(w, normal, hover, pressed, disabled, nullptr),
      checkedNormalData(checkedNormal),
      checkedHoverData(checkedHover),
      checkedPressedData(checkedPressed),
      checked(isChecked ? 1 : 0) {
  controlKind = 2;
  data = LookData(kNormalLook);
}

const MScale3Data* MCheckboxButton::LookData(Look look) const {
  if (!checked || look == kDisabledLook) return MButton::LookData(look);
  switch (look) {
    case kHoverLook:
      return checkedHoverData;
    case kPressedLook:
      return checkedPressedData;
    default:
      return checkedNormalData;
  }
}

void MCheckboxButton::Click() { checked = checked ? 0 : 1; }

MCheckboxButton* MakeCheckbox(MWindow* window, void* skin, bool checked) {
  // Source rectangles in the left slot; middle and right stay empty. Pressed looks are the normal ones.
  auto look = [skin](MSourceRect left) { return std::make_unique<MScale3Data>(MScale3Data{skin, left, {}, {}, 2}); };
  std::vector<std::unique_ptr<MScale3Data>> looks;
  looks.push_back(look({4, 0, 15, 15}));    // normal
  looks.push_back(look({19, 0, 15, 15}));   // hover
  looks.push_back(look({4, 15, 15, 15}));   // checked normal
  looks.push_back(look({19, 15, 15, 15}));  // checked hover
  auto* box = new MCheckboxButton(window, looks[0].get(), looks[1].get(), looks[0].get(), looks[0].get(),
                                  looks[2].get(), looks[3].get(), looks[2].get(), checked);
  box->ownedLooks = std::move(looks);
  box->drawFlags |= MRegion::kNativeWindow;
  return box;
}

}  // namespace SASM
