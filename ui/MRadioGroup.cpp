#include "ui/MRadioGroup.h"

#include "ui/MRadioButton.h"

namespace SASM {

MRadioGroup::MRadioGroup() : buttons(kFirstCapacity + 1, nullptr) {}

void MRadioGroup::Add(MRadioButton* button) {
  if (count == capacity) {
    capacity *= 2;
    buttons.resize(capacity + 1, nullptr);
  }
  ++count;
  buttons[count] = button;
}

void MRadioGroup::Select(MRadioButton* button) {
  if (selected) {
    selected->checked = 0;
    selected->ShowLook(MButton::kNormalLook);
  }
  button->checked = 1;
  selected = button;
}

}  // namespace SASM
