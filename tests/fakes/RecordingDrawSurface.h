#pragma once
// A drawing surface that writes down every call, in order.
#include <cstdint>
#include <vector>

#include "ui/IDrawSurface.h"

namespace SASM {

class RecordingDrawSurface : public IDrawSurface {
 public:
  enum class Kind { kFill, kStretch, kBlend };
  struct Call {
    Kind kind;
    MBlit blit;  // for a fill, the destination only
    void* image;
    uint32_t colour;
    uint8_t alpha;
  };

  void FillSolid(const MRect& d, uint32_t colour) override {
    calls.push_back({Kind::kFill, {{d.left, d.top, d.Width(), d.Height()}, {}}, nullptr, colour, 0});
  }
  void StretchCopy(const MBlit& blit, void* image) override { calls.push_back({Kind::kStretch, blit, image, 0, 0}); }
  void AlphaBlend(const MBlit& blit, void* image, uint8_t alpha) override {
    calls.push_back({Kind::kBlend, blit, image, 0, alpha});
  }

  std::vector<Call> calls;
};

}  // namespace SASM
