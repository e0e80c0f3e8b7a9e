#pragma once
// A window with no panels of its own: the shim's window until the installer's
// panels exist, and the window of the toolkit's tests and tools. Events go to
// an optional listener; focus goes to the region's native window.
#include <cstdint>

#include "ui/MWindow.h"

namespace SASM {

class MPlainWindow : public MWindow {
 public:
  static constexpr uint32_t kWindowColour = 3355442;
  using EventListener = void (*)(MPlainWindow* window, int32_t id, int32_t message, intptr_t param, void* context);

  explicit MPlainWindow(MorphUI* ui);

  void HandleEvent(int32_t id, int32_t message, intptr_t param) override;
  void SetFocusRegion(MRegion* region, bool showRing) override;

  void SetListener(EventListener listener, void* context) {
    listener_ = listener;
    listenerContext_ = context;
  }

 private:
  EventListener listener_ = nullptr;
  void* listenerContext_ = nullptr;
};

}  // namespace SASM
