#pragma once
// The radio buttons of one choice. Selection works through selected alone;
// the array keeps every member from index 1 on and is never read.
#include <cstdint>
#include <vector>

namespace SASM {

class MRadioButton;

class MRadioGroup {
 public:
  static constexpr uint32_t kFirstCapacity = 3;

  MRadioGroup();
  void Add(MRadioButton* button);
  // Unchecks the chosen one, checks button and chooses it.
  void Select(MRadioButton* button);

  MRadioButton* selected = nullptr;
  // One slot past capacity: the count is raised before a member is stored.
  std::vector<MRadioButton*> buttons;
  uint32_t count = 0;
  uint32_t capacity = kFirstCapacity;
};

}  // namespace SASM
