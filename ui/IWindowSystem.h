#pragma once
// The platform under MorphUI: window creation, the event queue, the pump and
// the image resources.
#include <cstdint>
#include <memory>

#include "ui/ITextCanvas.h"
#include "ui/ITooltip.h"
#include "ui/IWindowHost.h"

namespace SASM {

class MWindow;

// The two ways an image resource may be stored.
enum class ImageForm : int32_t { kPlain = 0, kCompressed = 1 };

class IWindowSystem {
 public:
  virtual ~IWindowSystem() = default;

  // Creates the top-level window of window; the style has a minimise box when asked.
  virtual std::unique_ptr<IWindowHost> CreateWindowHost(MWindow& window, bool minimiseBox) = 0;
  virtual void PostWindowMessage(void* handle, uint32_t message, uintptr_t wParam, intptr_t lParam) = 0;
  // Pumps until the quit message; its exit value. Null window: nothing to show.
  virtual int32_t RunMessageLoop(MWindow* window) = 0;
  // The image's drawing context, or null when the resource is missing. The
  // system keeps what it loads until it is destroyed.
  virtual void* LoadSkinImage(ImageForm form, int32_t id) = 0;
  // A text area's bitmap and fonts of the given size, compatible with the
  // window's back buffer; null where text cannot be drawn.
  virtual std::unique_ptr<ITextCanvas> CreateTextCanvas(void* backDC, int32_t size) {
    (void)backDC;
    (void)size;
    return nullptr;
  }
  // The locale of the calling thread; text offsets and fonts follow it.
  virtual uint32_t ThreadLocale() { return 1033; }
  // A topmost tip owned by parent for the native control covered; null where there are none.
  virtual std::unique_ptr<ITooltip> CreateTooltip(void* parent, void* covered) {
    (void)parent;
    (void)covered;
    return nullptr;
  }
};

}  // namespace SASM
