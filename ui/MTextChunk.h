#pragma once
// One run of a text area's text: a piece of text with its link, weight, line
// break and the vertical space before it. The mark-up parser makes the runs;
// the line breaker lays them out.
#include <cstdint>
#include <vector>

#include "engine/MString.h"

namespace SASM {

struct MTextChunk {
  enum LinkKind : int32_t { kNoLink = 0, kWebLink = 1, kSettingsLink = 2 };

  static constexpr uint32_t kWhite = 16777215;

  MString text;
  MString href;
  int32_t linkKind = kNoLink;
  bool newLine = false;
  bool bold = false;
  int32_t spacing = 0;
  uint32_t color = kWhite;

  // A web link counts only with an address; a settings-applet link always does.
  bool IsLink() const { return (linkKind == kWebLink && !href.IsEmpty()) || linkKind == kSettingsLink; }

  // The runs of a text: with mark-up off, the whole text as one run in the plain
  // colour; with it on, the tags a, ncp, strong, br, li and ul read, any other
  // tag dropped, entities left as written.
  static std::vector<MTextChunk> Parse(const MString& text, bool hasMarkup, bool plainBold, uint32_t plainColor);
};

}  // namespace SASM
