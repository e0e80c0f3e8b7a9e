#pragma once
// A node of the visual tree: a rectangle relative to its parent that draws one
// piece of a skin image, a solid colour or nothing, and may take input.
#include <cstdint>

#include "engine/MString.h"
#include "ui/IDrawSurface.h"
#include "ui/MLink.h"
#include "ui/MRect.h"

namespace SASM {

class MAccProxyObject;
class MRegion;
class MWindow;

// True means the event was consumed.
using RegionHandler = bool (*)(MRegion* region, MWindow* window, MPoint* point, bool inside, uint32_t message,
                               void* context);

class MRegion : public MLink {
 public:
  static constexpr uint8_t kDrawModeMask = 3;
  static constexpr uint8_t kNativeWindow = 64;
  enum DrawMode : uint8_t { kSolidFill = 0, kOpaqueStretch = 1, kAlphaBlend = 2, kNoDraw = 3 };

  // Ends the tie between a region that is going and its accessible object;
  // set by the platform that makes those objects.
  using ReleaseAccessibleFn = void (*)(MRegion& region);
  static ReleaseAccessibleFn releaseAccessible;

  virtual ~MRegion();
  virtual void Layout() {}

  MRegion* Next() const { return static_cast<MRegion*>(next); }
  MRegion* Previous() const { return static_cast<MRegion*>(prev); }
  uint8_t DrawMode() const { return drawFlags & kDrawModeMask; }
  void SetDrawMode(uint8_t mode) { drawFlags = static_cast<uint8_t>((drawFlags & ~kDrawModeMask) | (mode & kDrawModeMask)); }
  // Draw mode 0 keeps its colour where the image would be.
  void SetFillColour(uint32_t colour) { image = reinterpret_cast<void*>(static_cast<uintptr_t>(colour)); }

  // Appends child to this region's children and gives it this owner.
  void AttachChild(MRegion* child);
  // Takes this region out of its list; it is not freed.
  void Detach();
  void SetVisible(bool on);
  void SetEnabled(bool on);
  void Invalidate();
  void SyncNativeWindow();
  // bounds in the window's client coordinates.
  MRect AbsoluteBounds() const;

  // Draws first and its later siblings, each over the one before, children over parents.
  static void DrawChain(MRegion* first, const MRect& dirty, MPoint offset, IDrawSurface& surface);
  // point is relative to this region's top-left.
  bool HitTest(MPoint point, uint32_t message, bool force);

  MRect bounds;
  MWindow* owner = nullptr;
  MRegion* parent = nullptr;
  MRegion* firstChild = nullptr;
  MSourceRect sourceRect;
  void* image = nullptr;
  RegionHandler handler = nullptr;
  void* handlerContext = nullptr;
  int32_t controlId = 0;
  MRect clipRect;
  uint8_t drawFlags = kAlphaBlend;
  uint8_t alpha = 255;
  uint8_t visible = 1;
  uint8_t enabled = 1;
  void* nativeWindow = nullptr;
  MString label;
  MAccProxyObject* accProxy = nullptr;
  int32_t controlKind = 0;

 protected:
  MRegion() = default;

 private:
  friend class MWindow;
  // Appends region to the list that starts at head (a parent's children or the window's regions).
  static void AppendTo(MRegion*& head, MRegion* region);
  void DrawSelf(const MRect& dirty, MPoint offset, IDrawSurface& surface);
};

}  // namespace SASM
