#pragma once
// The top-level window: its regions, back buffer, timer, size animation and
// the routing of platform messages to regions. The platform's part lives
// behind IWindowHost; the rules live here.
#include <cstdint>
#include <memory>

#include "engine/MString.h"
#include "ui/IDrawSurface.h"
#include "ui/IWindowHost.h"
#include "ui/MLink.h"
#include "ui/MRect.h"

namespace SASM {

class MorphUI;
class MRegion;

class MWindow : public MLink {
 public:
  // Platform message numbers that are part of the event contract.
  static constexpr uint32_t kMouseMove = 512;
  static constexpr uint32_t kButtonDown = 513;
  static constexpr uint32_t kButtonUp = 514;
  static constexpr uint32_t kTimer = 275;
  static constexpr uint32_t kUserBase = 1024;
  static constexpr uint32_t kUserLast = 49151;
  static constexpr uint32_t kTickMilliseconds = 16;
  static constexpr int32_t kDefaultPosition = INT32_MIN;  // the platform's "choose for me"
  static constexpr int32_t kCloseExitCode = 1039;

  // Creates the platform window through ui's window system, topmost, with its
  // back buffer and its 16 ms timer.
  explicit MWindow(MorphUI* ui);
  virtual void HandleEvent(int32_t id, int32_t message, intptr_t param) = 0;
  virtual void SetFocusRegion(MRegion* region, bool showRing) = 0;
  virtual ~MWindow();

  IWindowHost* Host() const { return host_.get(); }

  // Appends a top-level region.
  void AttachRegion(MRegion* region);
  // Moves and sizes the window to rect; without animating, the target follows.
  void ApplyRect(bool animating, bool notify);
  void ApplyTitle();
  void Show(bool show);
  void SetCursorKind(int32_t kind);
  void CaptureRegion(MRegion* region);
  void ReleaseRegionCapture();
  void ExitInstaller(int32_t code);

  // Entry points for the platform's messages.
  void OnTimer();
  // lParam holds x and y in its low and high 16 bits.
  void OnMouse(uint32_t message, uint32_t lParam);
  // Draws the dirty part into the back buffer's origin.
  void OnPaint(const MRect& dirty, IDrawSurface& backBuffer);
  void OnClose();
  // Tab with no child focused: from the first child, forward only with Shift.
  void OnWindowTab(bool shiftDown);
  // Tab on a child: forward unless Shift.
  void OnChildTab(void* child, bool shiftDown);

  // The next focusable region from a native child, wrapping at the ends; null
  // when the last one looked at cannot take the focus.
  MRegion* NextFocus(void* start, bool forward);
  static bool IsFocusable(const MRegion* region);

  uint32_t backgroundColor = 0;
  MRegion* firstRegion = nullptr;
  MRegion* capturedRegion = nullptr;
  MRect rect;
  MRect targetRect;
  MString title;
  MRegion* focusRegion = nullptr;
  uint8_t ringVisible = 0;
  MorphUI* morph = nullptr;
  uint16_t classAtom = 0;
  void* handle = nullptr;
  void* backDC = nullptr;
  int32_t cursorKind = 0;

 private:
  std::unique_ptr<IWindowHost> host_;
};

}  // namespace SASM
