#include "ui/panels/MUIPanelProgress.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelProgress::MUIPanelProgress(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelProgress::~MUIPanelProgress() = default;

bool MUIPanelProgress::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM

namespace SASM {
void MUIPanelProgress::Arm(ProgressCallback cb, void* context, float from, float to, float by) {
  callback = cb;
  callbackContext = context;
  current = from;
  target = to;
  step = by;
  running = 1;
}
void MUIPanelProgress::ShowUpdateChoice() {}
int32_t MUIPanelProgress::CompareVersions(const MString&, const MString&) { return 0; }
}  // namespace SASM
