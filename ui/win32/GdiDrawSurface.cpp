#include "ui/win32/GdiDrawSurface.h"

namespace SASM {

void GdiDrawSurface::FillSolid(const MRect& d, uint32_t colour) {
  HBRUSH brush = CreateSolidBrush(colour);
  RECT r{d.left, d.top, d.right, d.bottom};
  FillRect(dc_, &r, brush);
  DeleteObject(brush);
}

void GdiDrawSurface::StretchCopy(const MBlit& b, void* image) {
  StretchBlt(dc_, b.destination.x, b.destination.y, b.destination.width, b.destination.height,
             static_cast<HDC>(image), b.source.x, b.source.y, b.source.width, b.source.height, SRCCOPY);
}

void GdiDrawSurface::AlphaBlend(const MBlit& b, void* image, uint8_t alpha) {
  // A system without the blending entry draws no blended pieces rather than calling through null.
  if (!alphaBlend_) return;
  BLENDFUNCTION blend{AC_SRC_OVER, 0, alpha, AC_SRC_ALPHA};
  alphaBlend_(dc_, b.destination.x, b.destination.y, b.destination.width, b.destination.height,
              static_cast<HDC>(image), b.source.x, b.source.y, b.source.width, b.source.height, blend);
}

}  // namespace SASM
