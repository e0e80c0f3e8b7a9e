#pragma once
// A link run of a text area: an invisible region over the run with a
// one-pixel underline whose colour follows the pointer. Releasing a press
// inside opens its address through the host's shim.
#include <cstdint>

#include "engine/MString.h"
#include "ui/MSkinnedSection.h"

namespace SASM {

class MHTMLLink : public MSkinnedSection {
 public:
  enum State : int32_t { kIdle = 0, kHover = 1, kPressedInside = 2, kPressedOutside = 3 };
  static constexpr int32_t kArrowCursor = 0;
  static constexpr int32_t kHandCursor = 1;

  MHTMLLink(const MString& url, uint32_t normalColor, uint32_t hoverColor);
  ~MHTMLLink() override;
  // The underline along the bottom row.
  void Layout() override;

  MSkinnedSection underline;
  MString url;
  uint32_t normalColor = 0;
  uint32_t hoverColor = 0;
  int32_t state = kIdle;

 protected:
  // What a completed click does.
  virtual void Open(MWindow* window);

 private:
  static bool Handle(MRegion* region, MWindow* window, MPoint* point, bool inside, uint32_t message, void* context);
  void SetUnderlineColour(uint32_t colour);
};

}  // namespace SASM
