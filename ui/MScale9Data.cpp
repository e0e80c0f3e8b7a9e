#include "ui/MScale9Data.h"

namespace SASM {

MScale9Data MScale9Data::Make(int32_t x, int32_t y, int32_t l, int32_t m, int32_t r, int32_t t, int32_t c, int32_t b,
                              void* image, uint8_t drawMode) {
  MScale9Data data;
  const int32_t rowTop[3] = {y, y + t, y + t + c};
  const int32_t rowHeight[3] = {t, c, b};
  for (int i = 0; i < 3; ++i) {
    MScale3Data& row = data.rows[i];
    row.image = image;
    row.drawMode = drawMode;
    row.left = {x, rowTop[i], l, rowHeight[i]};
    row.middle = {x + l, rowTop[i], m, rowHeight[i]};
    row.right = {x + l + m, rowTop[i], r, rowHeight[i]};
  }
  return data;
}

}  // namespace SASM
