#pragma once
// The host's handle on the user interface: six operations over one window.
#include <cstdint>
#include <memory>

#include "engine/MString.h"
#include "ui/IWindowSystem.h"

namespace SASM {

class HostCallbacks;
class MorphUI;
class MWindow;

// value carries a pointer for some codes (6: the product mask to fill).
using HostEventCallback = int32_t (*)(MorphUI* ui, int32_t code, intptr_t value, void* context);

class MorphUI {
 public:
  // module is already resolved: the host's, or the running executable's.
  MorphUI(HostCallbacks* host, void* module, std::unique_ptr<IWindowSystem> system);

  virtual void SetEventCallback(HostEventCallback callback, void* context);
  // The callback's answer, or 0 without one.
  virtual int32_t Notify(int32_t code, intptr_t value);
  // Stores the window and lets it build its contents.
  virtual void SetWindow(MWindow* window);
  // Safe from any thread: the event arrives as message + 1024 with id and param.
  virtual void PostEvent(int32_t id, int32_t message, intptr_t param);
  virtual int32_t RunMessageLoop();
  // Every text of the window goes through the host with the fallback set.
  virtual MString& GetString(MString& out, uint32_t id);
  // Frees the window, then the window system and what it loaded.
  virtual ~MorphUI();

  IWindowSystem& System() { return *system; }

  // Holds the blending entry that draw mode 2 calls, with the rest of the platform.
  std::unique_ptr<IWindowSystem> system;
  void* resourceModule = nullptr;
  HostCallbacks* host = nullptr;
  MWindow* window = nullptr;
  HostEventCallback callback = nullptr;
  void* callbackContext = nullptr;
};

}  // namespace SASM
