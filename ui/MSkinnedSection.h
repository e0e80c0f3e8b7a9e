#pragma once
// The concrete region: every control of the toolkit derives from it.
#include "ui/MRegion.h"

namespace SASM {

class MSkinnedSection : public MRegion {
 public:
  MSkinnedSection() = default;
  // A region that draws source of image.
  MSkinnedSection(void* image, const MSourceRect& source) {
    this->image = image;
    sourceRect = source;
  }
};

}  // namespace SASM
