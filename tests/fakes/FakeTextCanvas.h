#pragma once
// A text canvas in memory with fixed-width glyphs: ten pixels a character,
// twelve in bold, lines 16 high. Draws and white fills are written down; a
// drawn line marks its first pixel white so the alpha pass has something to
// work on.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/MString.h"
#include "ui/ITextCanvas.h"

namespace SASM {

class FakeTextCanvas : public ITextCanvas {
 public:
  explicit FakeTextCanvas(int32_t size) : size(size) {}

  bool Resize(int32_t w, int32_t h) override {
    resizes.push_back({w, h});
    if (failResize) return false;
    width = w;
    height = h;
    pixels.assign(static_cast<size_t>(w) * h, 0xDEADBEEF);
    return true;
  }
  void Clear() override {
    ++clears;
    std::fill(pixels.begin(), pixels.end(), 0u);
  }
  uint32_t* Pixels() override { return pixels.empty() ? nullptr : pixels.data(); }
  void* Image() override { return this; }
  TextLineBreaker::Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) override {
    const int32_t each = bold ? 12 : 10;
    TextLineBreaker::Measure m;
    m.width = static_cast<int32_t>(text.size()) * each;
    m.height = 16;
    while (static_cast<size_t>(m.fit) < text.size() && (m.fit + 1) * each <= maxWidth) m.extents.push_back(++m.fit * each);
    return m;
  }
  int32_t DrawText(std::u16string_view text, const TextLineBreaker::Edges& r, uint32_t colour, uint32_t) override {
    draws.push_back(MString(text).ToUtf8() + "@" + std::to_string(r.left) + "," + std::to_string(r.top));
    colours.push_back(colour);
    if (r.left >= 0 && r.top >= 0 && r.left < width && r.top < height) At(r.left, r.top) = 0x00FFFFFF;
    return 16;
  }
  void FillWhite(const MRect& r) override { whiteFills.push_back(r); }

  // The pixel at a screen position of the bottom-up buffer.
  uint32_t& At(int32_t x, int32_t y) { return pixels[static_cast<size_t>(height - 1 - y) * width + x]; }

  int32_t size;
  bool failResize = false;
  int32_t width = 0, height = 0;
  std::vector<uint32_t> pixels;
  std::vector<std::pair<int32_t, int32_t>> resizes;
  int clears = 0;
  std::vector<std::string> draws;
  std::vector<uint32_t> colours;
  std::vector<MRect> whiteFills;
};

}  // namespace SASM
