#pragma once
// Where regions draw: the back buffer behind the dirty rectangle. The three
// operations are the three draw modes; the resampling of a scaled copy is the
// platform's.
#include <cstdint>

#include "ui/MRect.h"

namespace SASM {

struct MBlit {
  MSourceRect destination;
  MSourceRect source;
};

class IDrawSurface {
 public:
  virtual ~IDrawSurface() = default;
  // colour is 0x00BBGGRR.
  virtual void FillSolid(const MRect& destination, uint32_t colour) = 0;
  virtual void StretchCopy(const MBlit& blit, void* image) = 0;
  // Premultiplied source pixels, then a constant alpha over the whole piece.
  virtual void AlphaBlend(const MBlit& blit, void* image, uint8_t alpha) = 0;
};

}  // namespace SASM
