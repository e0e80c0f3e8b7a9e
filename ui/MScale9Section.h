#pragma once
// A region of three three-slice rows: the top and bottom keep their heights,
// the middle row stretches.
#include "ui/MScale3Section.h"
#include "ui/MScale9Data.h"

namespace SASM {

class MScale9Section : public MSkinnedSection {
 public:
  // data must outlive the section; no rows for a null data.
  MScale9Section(const MScale9Data* data, MWindow* window);
  ~MScale9Section() override;
  void Layout() override;

  MScale3Section* top = nullptr;
  MScale3Section* middle = nullptr;
  MScale3Section* bottom = nullptr;
};

}  // namespace SASM
