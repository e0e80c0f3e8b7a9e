#include "ui/MRegion.h"

#include <cmath>

#include "ui/MWindow.h"

namespace SASM {

MRegion::ReleaseAccessibleFn MRegion::releaseAccessible = nullptr;

MRegion::~MRegion() {
  // Clients may hold the accessible object longer than this region lives.
  // owner is not read here: a window may be deleted before its regions.
  if (accProxy && releaseAccessible) releaseAccessible(*this);
}

void MRegion::AppendTo(MRegion*& head, MRegion* region) {
  if (!head) {
    region->next = nullptr;
    region->prev = nullptr;
    head = region;
    return;
  }
  MRegion* last = head;
  for (;;) {
    // Already listed: the list stays as it is. At the end too, where linking
    // it after itself would close the list into a ring.
    if (last == region) return;
    if (!last->next) break;
    last = last->Next();
  }
  last->next = region;
  region->prev = last;
  region->next = nullptr;
}

void MRegion::AttachChild(MRegion* child) {
  child->parent = this;
  child->owner = owner;
  AppendTo(firstChild, child);
  if ((child->drawFlags & kNativeWindow) && !child->nativeWindow && owner && owner->Host())
    child->nativeWindow = owner->Host()->CreateNativeChild(*child, child->AbsoluteBounds());
}

void MRegion::Detach() {
  IWindowHost* host = owner ? owner->Host() : nullptr;
  if ((drawFlags & kNativeWindow) && nativeWindow) {
    if (host) host->DestroyNativeChild(nativeWindow);
    nativeWindow = nullptr;
  }
  // A first child takes its later siblings out of the parent's view with it:
  // they are not promoted.
  if (parent && parent->firstChild == this) parent->firstChild = nullptr;
  if (!parent && owner && owner->firstRegion == this) owner->firstRegion = nullptr;
  if (prev) prev->next = next;
  if (next) next->prev = prev;
  prev = nullptr;
  next = nullptr;
  // The window must not keep pointing at a region that may be freed next.
  if (owner && owner->capturedRegion == this) owner->capturedRegion = nullptr;
  if (owner && owner->focusRegion == this) owner->focusRegion = nullptr;
  parent = nullptr;
  owner = nullptr;
}

void MRegion::SetVisible(bool on) {
  IWindowHost* host = owner ? owner->Host() : nullptr;
  if (on) {
    visible = 1;
    if (nativeWindow && host) host->ShowNativeChild(nativeWindow, true);
    return;
  }
  if (visible && owner && owner->focusRegion == this) owner->SetFocusRegion(nullptr, false);
  visible = 0;
  if (nativeWindow && host) host->ShowNativeChild(nativeWindow, false);
}

void MRegion::SetEnabled(bool on) {
  IWindowHost* host = owner ? owner->Host() : nullptr;
  if (!on && nativeWindow && host && host->HasPlatformFocus(nativeWindow)) owner->SetFocusRegion(nullptr, false);
  enabled = on ? 1 : 0;
}

MRect MRegion::AbsoluteBounds() const {
  MRect r = bounds;
  for (const MRegion* a = parent; a; a = a->parent) r.Offset(a->bounds.left, a->bounds.top);
  return r;
}

void MRegion::Invalidate() {
  if (owner && owner->Host()) owner->Host()->InvalidateRect(AbsoluteBounds());
}

void MRegion::SyncNativeWindow() {
  if ((drawFlags & kNativeWindow) && nativeWindow && owner && owner->Host())
    owner->Host()->MoveNativeChild(nativeWindow, AbsoluteBounds());
}

namespace {

// Nearest, ties to even, in single precision as the skin arithmetic is defined.
int32_t RoundEven(float value) { return static_cast<int32_t>(std::nearbyint(value)); }

}  // namespace

void MRegion::DrawSelf(const MRect& dirty, MPoint offset, IDrawSurface& surface) {
  MRect moved = bounds;
  moved.Offset(offset.x, offset.y);
  if (!MRect::Intersect(clipRect, moved, dirty)) return;
  const MSourceRect clip{clipRect.left, clipRect.top, clipRect.Width(), clipRect.Height()};
  clipRect = MRect{clip.x, clip.y, clip.width, clip.height};

  const float scaleX = static_cast<float>(sourceRect.width) / static_cast<float>(moved.Width());
  const float scaleY = static_cast<float>(sourceRect.height) / static_cast<float>(moved.Height());
  MSourceRect source;
  source.x = RoundEven(static_cast<float>(clip.x - moved.left) * scaleX) + sourceRect.x;
  source.y = RoundEven(static_cast<float>(clip.y - moved.top) * scaleY) + sourceRect.y;
  source.width = RoundEven(static_cast<float>(clip.width) * scaleX);
  source.height = RoundEven(static_cast<float>(clip.height) * scaleY);
  if (source.width < 1) source.width = 1;
  if (source.height < 1) source.height = 1;
  if (source.x + source.width > sourceRect.x + sourceRect.width) source.x = sourceRect.x + sourceRect.width - source.width;
  if (source.y + source.height > sourceRect.y + sourceRect.height)
    source.y = sourceRect.y + sourceRect.height - source.height;

  // The back buffer holds only the dirty part, at its origin.
  const MBlit blit{{clip.x - dirty.left, clip.y - dirty.top, clip.width, clip.height}, source};
  switch (DrawMode()) {
    case kSolidFill:
      surface.FillSolid(MRect::FromSize(blit.destination.x, blit.destination.y, clip.width, clip.height),
                        static_cast<uint32_t>(reinterpret_cast<uintptr_t>(image)));
      break;
    case kOpaqueStretch:
      surface.StretchCopy(blit, image);
      break;
    case kAlphaBlend:
      surface.AlphaBlend(blit, image, alpha);
      break;
    default:
      break;
  }
}

void MRegion::DrawChain(MRegion* first, const MRect& dirty, MPoint offset, IDrawSurface& surface) {
  for (MRegion* region = first; region; region = region->Next()) {
    if (!region->visible) continue;
    if (region->image) region->DrawSelf(dirty, offset, surface);
    if (region->firstChild)
      DrawChain(region->firstChild, dirty, {offset.x + region->bounds.left, offset.y + region->bounds.top}, surface);
  }
}

bool MRegion::HitTest(MPoint point, uint32_t message, bool force) {
  if (!visible) return false;
  for (MRegion* child = firstChild; child; child = child->Next()) {
    if (child->HitTest({point.x - child->bounds.left, point.y - child->bounds.top}, message, force)) return true;
  }
  // Edges are outside.
  const bool inside = point.x > 0 && point.y > 0 && point.x < bounds.Width() && point.y < bounds.Height();
  if (!handler) return false;
  if (!inside && !force) return false;
  return handler(this, owner, &point, inside, message, handlerContext);
}

}  // namespace SASM
