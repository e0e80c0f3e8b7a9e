#pragma once
// One look of a three-slice section: left cap, middle, right cap of one image.
#include <cstdint>

#include "ui/MRect.h"

namespace SASM {

struct MScale3Data {
  void* image = nullptr;
  MSourceRect left;
  MSourceRect middle;
  MSourceRect right;
  uint8_t drawMode = 2;
};

}  // namespace SASM
