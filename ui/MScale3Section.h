#pragma once
// A region made of a left cap, a stretched middle and a right cap.
#include "ui/MScale3Data.h"
#include "ui/MSkinnedSection.h"

namespace SASM {

class MScale3Section : public MSkinnedSection {
 public:
  // No children for a null data. The section owns the three pieces it makes.
  MScale3Section(const MScale3Data* data, MWindow* window);
  ~MScale3Section() override;
  void Layout() override;

  const MScale3Data* data = nullptr;
  MSkinnedSection* left = nullptr;
  MSkinnedSection* middle = nullptr;
  MSkinnedSection* right = nullptr;
  MWindow* window = nullptr;
};

}  // namespace SASM
