#include "ui/MHTMLLink.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "ui/MWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

MHTMLLink::MHTMLLink(const MString& address, uint32_t normal, uint32_t hover)
    : url(address), normalColor(normal), hoverColor(hover) {
  controlId = 1;
  underline.drawFlags = kSolidFill;
  underline.SetFillColour(normalColor);
  AttachChild(&underline);
  handler = &MHTMLLink::Handle;
  handlerContext = &underline;
}

MHTMLLink::~MHTMLLink() {
  // The window must not keep a pointer to a link that is going.
  if (owner && owner->capturedRegion == this) owner->capturedRegion = nullptr;
  if (owner && owner->focusRegion == this) owner->focusRegion = nullptr;
}

void MHTMLLink::Layout() {
  underline.owner = owner;
  underline.bounds = MRect::FromSize(0, bounds.Height() - 1, bounds.Width(), 1);
  underline.Invalidate();
}

void MHTMLLink::Open(MWindow* window) {
  if (window && window->morph && window->morph->host && window->morph->host->shim)
    window->morph->host->shim->OpenUrl(window->handle, url);
}

void MHTMLLink::SetUnderlineColour(uint32_t colour) { underline.SetFillColour(colour); }

bool MHTMLLink::Handle(MRegion* region, MWindow* window, MPoint*, bool inside, uint32_t message, void*) {
  auto* link = static_cast<MHTMLLink*>(region);
  bool consumed = true;
  switch (message) {
    case MWindow::kMouseMove:
      if (link->state == kIdle && inside) {
        if (window) window->CaptureRegion(link);
        if (window) window->SetCursorKind(kHandCursor);
        link->SetUnderlineColour(link->hoverColor);
        link->state = kHover;
      } else if (link->state == kHover && !inside) {
        if (window) window->ReleaseRegionCapture();
        if (window) window->SetCursorKind(kArrowCursor);
        link->SetUnderlineColour(link->normalColor);
        link->state = kIdle;
        consumed = false;
      } else if (link->state == kPressedInside && !inside) {
        link->SetUnderlineColour(link->hoverColor);
        link->state = kPressedOutside;
      } else if (link->state == kPressedOutside && inside) {
        link->SetUnderlineColour(link->normalColor);
        link->state = kPressedInside;
      }
      break;
    case MWindow::kButtonDown:
      link->SetUnderlineColour(link->normalColor);
      if (window && link->nativeWindow) window->SetFocusRegion(link, window->ringVisible != 0);
      link->state = kPressedInside;
      break;
    case MWindow::kButtonUp:
      if (link->state == kPressedInside) {
        link->SetUnderlineColour(link->hoverColor);
        link->state = kHover;
        link->Open(window);
      } else if (link->state == kPressedOutside) {
        if (window) window->ReleaseRegionCapture();
        if (window) window->SetCursorKind(kArrowCursor);
        link->SetUnderlineColour(link->normalColor);
        link->state = kIdle;
      }
      break;
    default:
      return false;
  }
  link->underline.owner = link->owner;
  link->underline.Invalidate();
  return consumed;
}

}  // namespace SASM
