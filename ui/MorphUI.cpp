#include "ui/MorphUI.h"

#include "engine/HostCallbacks.h"
#include "ui/MWindow.h"

namespace SASM {

MorphUI::MorphUI(HostCallbacks* h, void* module, std::unique_ptr<IWindowSystem> s)
    : system(std::move(s)), resourceModule(module), host(h) {}

MorphUI::~MorphUI() {
  delete window;
  window = nullptr;
}

void MorphUI::SetEventCallback(HostEventCallback cb, void* context) {
  callback = cb;
  callbackContext = context;
}

int32_t MorphUI::Notify(int32_t code, intptr_t value) {
  if (!callback) return 0;
  return callback(this, code, value, callbackContext);
}

void MorphUI::SetWindow(MWindow* w) {
  window = w;
  window->HandleEvent(2, 1, 0);
}

void MorphUI::PostEvent(int32_t id, int32_t message, intptr_t param) {
  system->PostWindowMessage(window ? window->handle : nullptr, static_cast<uint32_t>(message) + MWindow::kUserBase,
                      static_cast<uintptr_t>(static_cast<uint32_t>(id)), param);
}

int32_t MorphUI::RunMessageLoop() { return system->RunMessageLoop(window); }

MString& MorphUI::GetString(MString& out, uint32_t id) {
  host->LoadStringFallback(out, id, 1);
  return out;
}

}  // namespace SASM
