#include "ui/TextLineBreaker.h"

#include <algorithm>
#include <string>

namespace SASM {

int32_t TextLineBreaker::Layout(const std::vector<MTextChunk>& chunks, int32_t width, int32_t height,
                                int32_t verticalOffset, uint32_t linkTextColour, uint32_t format, Sink& sink) {
  if (chunks.empty()) return 1;
  int32_t lineCount = 1, x = 0, y = 0, lastHeight = 0;
  bool wrapped = false;
  size_t index = 0;
  std::u16string rest = chunks[0].text.ToU16();
  for (;;) {
    const MTextChunk& chunk = chunks[index];
    if (wrapped || chunk.newLine) {
      ++lineCount;
      y += lastHeight;
      x = 0;
    }
    // Added again on every line a wrapped run takes.
    y += chunk.spacing;
    Measure measure = sink.MeasureText(rest, chunk.bold, width - x);
    if (width - x < 1) break;
    int32_t fit = measure.fit;
    // Not one character fits a whole line: the same text would be tried on every
    // line after it, for ever. Nothing more can be drawn, so the layout ends here.
    if (fit < 1 && x == 0 && !rest.empty() && rest.front() != u' ') break;
    if (fit >= 1) {
      if (static_cast<size_t>(fit) < rest.size()) {
        // Back to a blank to break at; one at the very start doesn't count.
        for (int32_t i = fit - 1; i >= 1; --i) {
          if (rest[i] == u' ') {
            fit = i;
            break;
          }
        }
      }
      // The rest of the area from the pen position on.
      const Edges line{x, y + verticalOffset, width, height};
      lastHeight = sink.DrawText(std::u16string_view(rest).substr(0, fit), line,
                                 chunk.IsLink() ? linkTextColour : MTextChunk::kWhite, format | kDrawFlags);
      if (chunk.IsLink()) {
        const int32_t extent = static_cast<size_t>(fit - 1) < measure.extents.size() ? measure.extents[fit - 1] : 0;
        sink.AddLink(chunk, Box{x, verticalOffset + y, extent, lastHeight});
      }
    }
    x += measure.width;
    const size_t taken = static_cast<size_t>(std::max(fit, 0));
    wrapped = taken < rest.size();
    rest.erase(0, taken);
    rest.erase(0, std::min(rest.find_first_not_of(u' '), rest.size()));
    if (rest.empty()) {
      if (++index == chunks.size()) break;
      rest = chunks[index].text.ToU16();
    }
  }
  return lineCount;
}

void TextLineBreaker::ApplyAlpha(uint32_t* pixels, int32_t bufferWidth, int32_t bufferHeight, int32_t width,
                                 int32_t height, uint8_t alpha) {
  // Never beyond the buffer, whatever the area claims.
  width = std::min(width, bufferWidth);
  height = std::min(height, bufferHeight);
  if (!pixels || width <= 0 || height <= 1) return;
  // Bottom-up: the area's last screen row is memory row bufferHeight - height,
  // and the row above a pixel on screen is the next one in memory.
  for (int32_t row = bufferHeight - height; row < bufferHeight - 1; ++row) {
    uint32_t* line = pixels + static_cast<size_t>(row) * bufferWidth;
    const uint32_t* above = line + bufferWidth;
    for (int32_t i = 0; i < width; ++i) {
      const uint32_t pixel = line[i];
      const uint32_t g = (pixel >> 8) & 0xFF, up = (above[i] >> 8) & 0xFF;
      const uint32_t a = ((((up * (255 - g)) >> 8) + g) * alpha >> 8) & 0xFF;
      const uint32_t b = (a * (pixel & 0xFF)) >> 8, gg = (a * g) >> 8, r = (a * ((pixel >> 16) & 0xFF)) >> 8;
      line[i] = (a << 24) | (r << 16) | (gg << 8) | b;
    }
  }
}

}  // namespace SASM
