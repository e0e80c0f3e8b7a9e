#include "ui/MRadioButton.h"

#include "ui/MRadioGroup.h"

namespace SASM {

MRadioButton::MRadioButton(MWindow* w, const MScale3Data* normal, const MScale3Data* hover,
                           const MScale3Data* checkedNormal, const MScale3Data* checkedHover, bool isChecked,
                           int32_t v, MRadioGroup* g)
    : MCheckboxButton(w, normal, hover, normal, normal, checkedNormal, checkedHover, checkedNormal, isChecked),
      value(v),
      group(g) {
  controlKind = 3;
  if (!group) return;
  group->Add(this);
  if (isChecked) group->Select(this);
}

void MRadioButton::Click() {
  if (group) group->Select(this);
}

MRadioButton* MakeRadio(MWindow* window, void* skin, bool checked, int32_t value, MRadioGroup* group) {
  auto look = [skin](MSourceRect left) { return std::make_unique<MScale3Data>(MScale3Data{skin, left, {}, {}, 2}); };
  std::vector<std::unique_ptr<MScale3Data>> looks;
  looks.push_back(look({2, 140, 15, 15}));   // normal
  looks.push_back(look({17, 140, 15, 15}));  // hover
  looks.push_back(look({2, 155, 15, 15}));   // checked normal
  looks.push_back(look({17, 155, 15, 15}));  // checked hover
  auto* radio = new MRadioButton(window, looks[0].get(), looks[1].get(), looks[2].get(), looks[3].get(), checked,
                                 value, group);
  radio->ownedLooks = std::move(looks);
  radio->drawFlags |= MRegion::kNativeWindow;
  return radio;
}

}  // namespace SASM
