#pragma once
// The line breaking of a text area: its runs placed line by line across the
// area's width, each piece drawn and each link piece announced, through a
// small seam over the platform's text functions. Also the pass that turns the
// drawn text into premultiplied alpha with a one-pixel shadow.
#include <cstdint>
#include <string_view>
#include <vector>

#include "ui/MRect.h"
#include "ui/MTextChunk.h"

namespace SASM {

class TextLineBreaker {
 public:
  // A link's place: x, y, width, height.
  using Box = MSourceRect;
  // A draw's rectangle: left, top, right, bottom.
  using Edges = MRect;

  struct Measure {
    int32_t fit = 0;                // characters that fit the width offered
    std::vector<int32_t> extents;   // cumulative extent of each fitting character
    int32_t width = 0;              // of the whole text measured
    int32_t height = 0;
  };

  class Sink {
   public:
    virtual ~Sink() = default;
    // The text's extents in the run's font, with maxWidth offered.
    virtual Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) = 0;
    // Draws one line of text in the rectangle; returns the height drawn.
    virtual int32_t DrawText(std::u16string_view text, const Edges& rect, uint32_t colour, uint32_t format) = 0;
    // A link run's piece, drawn at box.
    virtual void AddLink(const MTextChunk& chunk, const Box& box) = 0;
  };

  // Flags added to every draw: one line, no clipping.
  static constexpr uint32_t kDrawFlags = 288;

  // Lays the runs out in a width by height area; returns the number of lines.
  static int32_t Layout(const std::vector<MTextChunk>& chunks, int32_t width, int32_t height, int32_t verticalOffset,
                        uint32_t linkTextColour, uint32_t format, Sink& sink);

  // Premultiplies a bottom-up 32-bit buffer of bufferWidth pixels a row, used
  // from its top-left corner over width by height: the green channel is the
  // coverage, the pixel above adds a shadow below the text, alpha dims it all.
  static void ApplyAlpha(uint32_t* pixels, int32_t bufferWidth, int32_t bufferHeight, int32_t width, int32_t height,
                         uint8_t alpha);
};

}  // namespace SASM
