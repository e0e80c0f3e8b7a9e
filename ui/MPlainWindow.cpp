#include "ui/MPlainWindow.h"

#include "ui/MRegion.h"

namespace SASM {

MPlainWindow::MPlainWindow(MorphUI* ui) : MWindow(ui) { backgroundColor = kWindowColour; }

void MPlainWindow::HandleEvent(int32_t id, int32_t message, intptr_t param) {
  if (listener_) listener_(this, id, message, param, listenerContext_);
}

void MPlainWindow::SetFocusRegion(MRegion* region, bool showRing) {
  focusRegion = region;
  ringVisible = showRing ? 1 : 0;
  if (Host()) Host()->SetPlatformFocus(region ? region->nativeWindow : nullptr);
}

}  // namespace SASM
