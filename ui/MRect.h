#pragma once
// Rectangles of the toolkit: region bounds as left, top, right, bottom, and
// skin source rectangles as x, y, width, height.
#include <cstdint>

namespace SASM {

struct MPoint {
  int32_t x = 0;
  int32_t y = 0;
};

struct MSourceRect {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
};

struct MRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  static MRect FromEdges(int32_t l, int32_t t, int32_t r, int32_t b) { return MRect{l, t, r, b}; }
  static MRect FromSize(int32_t x, int32_t y, int32_t w, int32_t h) { return MRect{x, y, x + w, y + h}; }

  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }

  void Offset(int32_t dx, int32_t dy) {
    left += dx;
    top += dy;
    right += dx;
    bottom += dy;
  }
  // Both corners lose the point: the rectangle seen from that point.
  void Subtract(MPoint p) { Offset(-p.x, -p.y); }

  // The common part of a and b into out; true when it is not empty. An empty
  // result is all zeros, as the platform leaves it.
  static bool Intersect(MRect& out, const MRect& a, const MRect& b) {
    MRect r{a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
            a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom};
    if (r.IsEmpty()) {
      out = MRect{};
      return false;
    }
    out = r;
    return true;
  }

  bool operator==(const MRect&) const = default;
};

}  // namespace SASM
