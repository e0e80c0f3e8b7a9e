#pragma once
// The window system under one top-level window: what MWindow and its regions
// ask of the platform. Native windows travel as opaque handles.
#include <cstdint>

#include "engine/MString.h"
#include "ui/MRect.h"

namespace SASM {

class MRegion;

enum class NativeStep { kNext, kPrevious, kFirst, kLast };

class IWindowHost {
 public:
  virtual ~IWindowHost() = default;

  virtual void* Handle() const = 0;
  // Moves the window to rect's left and top with rect's right and bottom as its
  // client size (plus the frame), and gives the back buffer that size.
  virtual void ApplyWindowRect(const MRect& rect) = 0;
  virtual void InvalidateRect(const MRect& rect) = 0;  // never erases
  virtual void SetTitle(const MString& title) = 0;
  virtual void Show(bool show) = 0;
  // To the foreground and the top of the z-order, neither moved nor sized.
  virtual void BringToFront() = 0;
  virtual void SetCursorKind(int32_t kind) = 0;
  virtual void SetCapture() = 0;
  virtual void ReleaseCapture() = 0;
  virtual void PostQuit(int32_t code) = 0;
  virtual void StartTimer(uint32_t periodMilliseconds) = 0;

  // Native children, one per region that asks for one. A platform with
  // accessibility gives each child its region's accessible object.
  virtual void* CreateNativeChild(MRegion& region, const MRect& absolute) = 0;
  virtual void DestroyNativeChild(void* child) = 0;
  virtual void ShowNativeChild(void* child, bool show) = 0;
  virtual void MoveNativeChild(void* child, const MRect& absolute) = 0;  // no repaint
  // The first child of the top-level window, or a sibling of child; null past an end.
  virtual void* FirstNativeChild() = 0;
  virtual void* NativeNeighbour(void* child, NativeStep step) = 0;
  virtual MRegion* RegionOfNative(void* child) = 0;
  virtual bool HasPlatformFocus(void* child) = 0;
  // Keyboard focus to child, or to the top-level window for null.
  virtual void SetPlatformFocus(void* child) = 0;
};

}  // namespace SASM
