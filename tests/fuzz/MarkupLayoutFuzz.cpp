// A text area's mark-up from the input, parsed and laid out over glyphs of a
// fixed width in an area of fuzzed size; then the alpha pass over a buffer.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/MString.h"
#include "ui/MTextChunk.h"
#include "ui/TextLineBreaker.h"

using namespace SASM;

namespace {

class FixedWidthSink : public TextLineBreaker::Sink {
 public:
  explicit FixedWidthSink(int32_t each) : each_(each) {}
  TextLineBreaker::Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) override {
    TextLineBreaker::Measure measure;
    const int32_t each = each_ + (bold ? 1 : 0);
    measure.width = static_cast<int32_t>(text.size()) * each;
    measure.height = 16;
    while (static_cast<size_t>(measure.fit) < text.size() && (measure.fit + 1) * each <= maxWidth)
      measure.extents.push_back(++measure.fit * each);
    // A layout that never ends would show here as a run-away count.
    if (++measures_ > 1000000) std::abort();
    return measure;
  }
  int32_t DrawText(std::u16string_view text, const TextLineBreaker::Edges&, uint32_t, uint32_t) override {
    if (text.empty()) std::abort();
    return 16;
  }
  void AddLink(const MTextChunk& chunk, const TextLineBreaker::Box&) override {
    if (!chunk.IsLink()) std::abort();
  }

 private:
  int32_t each_;
  int measures_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const int32_t width = input.ConsumeIntegralInRange<int32_t>(-10, 800);
  const int32_t height = input.ConsumeIntegralInRange<int32_t>(-10, 300);
  const int32_t glyph = input.ConsumeIntegralInRange<int32_t>(1, 40);
  const bool hasMarkup = input.ConsumeBool();
  const std::string bytes = input.ConsumeRemainingBytesAsString();
  const MString text = MString::FromUtf8(bytes.data(), static_cast<int32_t>(bytes.size()));

  const std::vector<MTextChunk> chunks = MTextChunk::Parse(text, hasMarkup, false, 0);
  FixedWidthSink sink(glyph);
  if (TextLineBreaker::Layout(chunks, width, height, 0, 0, 0, sink) < 1) std::abort();

  const int32_t bufferWidth = 64, bufferHeight = 32;
  std::vector<uint32_t> pixels(bufferWidth * bufferHeight, 0x00FFFFFF);
  TextLineBreaker::ApplyAlpha(pixels.data(), bufferWidth, bufferHeight, width, height, 128);
  return 0;
}
