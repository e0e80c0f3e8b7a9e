#pragma once
// A progress bar: a three-slice track and a three-slice fill drawn after it,
// the fill's width following value from 0 to 100.
#include <cstdint>

#include "ui/MScale3Section.h"

namespace SASM {

class MProgressBar : public MSkinnedSection {
 public:
  static constexpr int32_t kFillHeight = 29;

  // The looks must outlive the bar.
  MProgressBar(MWindow* window, const MScale3Data* trackLook, const MScale3Data* fillLook);
  ~MProgressBar() override;
  void Layout() override;

  int32_t value = 0;
  MWindow* window;
  MScale3Section track;
  MScale3Section fill;
};

}  // namespace SASM
