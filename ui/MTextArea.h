#pragma once
// Every text of the installer: the text's runs (plain, or read from a small
// mark-up) broken into lines and drawn on a private bitmap, made into
// premultiplied alpha with a one-pixel shadow, and shown as a blended region.
// Link runs become link regions over their pieces.
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/MString.h"
#include "ui/ITextCanvas.h"
#include "ui/MSkinnedSection.h"
#include "ui/MTextChunk.h"

namespace SASM {

class MHTMLLink;

class MTextArea : public MSkinnedSection {
 public:
  static constexpr int32_t kBufferStep = 128;
  enum Format : uint32_t { kLeft = 0, kRight = 2, kVerticalCentre = 4, kCentred = 5, kWordEllipsis = 262144 };

  MTextArea(MWindow* window, int32_t size, bool hasMarkup, bool plainBold);
  ~MTextArea() override;
  void Layout() override { Render(); }
  // Lays the text out and draws it; the number of lines.
  virtual int32_t Render();

  // Stored; drawn at the next Layout.
  void SetText(const MString& value);
  ITextCanvas* Canvas() const { return canvas_.get(); }

  uint32_t format = kLeft;
  uint32_t plainColor = 16777215;
  uint32_t linkTextColor = 16750638;
  uint32_t linkNormalColor = 14188839;
  uint32_t linkHoverColor = 16750638;
  MWindow* window = nullptr;
  int32_t bufferWidth = 256;
  int32_t bufferHeight = 128;
  MString text;
  uint8_t plainBold = 0;
  uint8_t hasMarkup = 0;
  uint8_t needsParse = 0;
  std::vector<MTextChunk> chunks;
  int32_t verticalOffset = 0;

 private:
  class LinkSink;
  void AddLink(const MTextChunk& chunk, const TextLineBreaker::Box& box);

  std::unique_ptr<ITextCanvas> canvas_;
  // Every link this area has made. A new layout takes the old ones out of view
  // without freeing them; they go with the area.
  std::vector<std::unique_ptr<MHTMLLink>> links_;
};

}  // namespace SASM
