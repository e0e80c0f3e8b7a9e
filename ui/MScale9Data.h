#pragma once
// One look of a nine-slice section: three rows of three pieces.
#include <cstdint>

#include "ui/MScale3Data.h"

namespace SASM {

struct MScale9Data {
  MScale3Data rows[3];

  // Columns of widths l, m, r and rows of heights t, c, b, packed from x, y.
  static MScale9Data Make(int32_t x, int32_t y, int32_t l, int32_t m, int32_t r, int32_t t, int32_t c, int32_t b,
                          void* image, uint8_t drawMode);
};

}  // namespace SASM
