#pragma once
// A text area's private bitmap and the platform's text calls on it: how many
// characters fit and where each ends, one line drawn in a rectangle, a white
// rectangle, and the 32-bit pixels for the alpha pass.
#include <cstdint>
#include <string_view>

#include "ui/MRect.h"
#include "ui/TextLineBreaker.h"

namespace SASM {

class ITextCanvas {
 public:
  virtual ~ITextCanvas() = default;
  // A new bottom-up bitmap of width by height, replacing the old one; false when it cannot be made.
  virtual bool Resize(int32_t width, int32_t height) = 0;
  // Every pixel to zero.
  virtual void Clear() = 0;
  // Bottom-up rows of the current bitmap, null without one; drawing is finished before they are read.
  virtual uint32_t* Pixels() = 0;
  // What a region's image points at: the bitmap's drawing context.
  virtual void* Image() = 0;
  // Selects the run's font, then measures text against maxWidth.
  virtual TextLineBreaker::Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) = 0;
  // In the font last selected; returns the height drawn.
  virtual int32_t DrawText(std::u16string_view text, const TextLineBreaker::Edges& rect, uint32_t colour,
                           uint32_t format) = 0;
  virtual void FillWhite(const MRect& rect) = 0;
};

}  // namespace SASM
