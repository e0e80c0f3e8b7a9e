#include "ui/MTextArea.h"

#include <algorithm>
#include <new>

#include "ui/MHTMLLink.h"
#include "ui/MNCPLink.h"
#include "ui/MWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

class MTextArea::LinkSink : public TextLineBreaker::Sink {
 public:
  LinkSink(MTextArea& area, ITextCanvas& canvas) : area_(area), canvas_(canvas) {}
  TextLineBreaker::Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) override {
    return canvas_.MeasureText(text, bold, maxWidth);
  }
  int32_t DrawText(std::u16string_view text, const TextLineBreaker::Edges& rect, uint32_t colour,
                   uint32_t format) override {
    return canvas_.DrawText(text, rect, colour, format);
  }
  void AddLink(const MTextChunk& chunk, const TextLineBreaker::Box& box) override { area_.AddLink(chunk, box); }

 private:
  MTextArea& area_;
  ITextCanvas& canvas_;
};

MTextArea::MTextArea(MWindow* w, int32_t size, bool markup, bool bold)
    : window(w), plainBold(bold ? 1 : 0), hasMarkup(markup ? 1 : 0) {
  drawFlags = kAlphaBlend;
  owner = w;
  if (w && w->morph) canvas_ = w->morph->System().CreateTextCanvas(w->backDC, size);
  if (canvas_ && canvas_->Resize(bufferWidth, bufferHeight)) image = canvas_->Image();
}

MTextArea::~MTextArea() {
  while (firstChild) firstChild->Detach();
  links_.clear();
}

void MTextArea::SetText(const MString& value) {
  text = value;
  needsParse = 1;
}

void MTextArea::AddLink(const MTextChunk& chunk, const TextLineBreaker::Box& box) {
  MHTMLLink* link = chunk.linkKind == MTextChunk::kSettingsLink
                        ? new (std::nothrow) MNCPLink(chunk.href, linkNormalColor, linkHoverColor)
                        : new (std::nothrow) MHTMLLink(chunk.href, linkNormalColor, linkHoverColor);
  // Without its region the link is lost, but its text stays drawn.
  if (!link) return;
  links_.emplace_back(link);
  link->bounds = MRect::FromSize(box.x, box.y, box.width, box.height);
  AttachChild(link);
  link->Layout();
  canvas_->FillWhite(MRect::FromEdges(box.x, box.y + box.height - 1, box.x + box.width, box.y + box.height));
}

int32_t MTextArea::Render() {
  const int32_t w = bounds.Width(), h = bounds.Height();
  if (w > bufferWidth || h > bufferHeight) {
    // Whole steps past the size, and never smaller than before.
    bufferWidth = std::max(bufferWidth, (w & ~(kBufferStep - 1)) + kBufferStep);
    bufferHeight = std::max(bufferHeight, (h & ~(kBufferStep - 1)) + kBufferStep);
    if (canvas_) image = canvas_->Resize(bufferWidth, bufferHeight) ? canvas_->Image() : nullptr;
  }
  if (needsParse) {
    chunks = MTextChunk::Parse(text, hasMarkup != 0, plainBold != 0, plainColor);
    needsParse = 0;
  }
  // The first link's detach takes the others of the last layout out of view with it.
  while (firstChild) firstChild->Detach();
  if (!canvas_ || !image) return 1;
  canvas_->Clear();
  if (chunks.empty()) return 1;

  LinkSink sink(*this, *canvas_);
  const int32_t lineCount =
      TextLineBreaker::Layout(chunks, w, h, verticalOffset, linkTextColor, format, sink);
  TextLineBreaker::ApplyAlpha(canvas_->Pixels(), bufferWidth, bufferHeight, w, h, alpha);
  sourceRect = MSourceRect{0, 0, w, h};
  SyncNativeWindow();
  Invalidate();
  label = text;
  return lineCount;
}

}  // namespace SASM
