#include "ui/panels/MUIPanelInstallerSplash.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelInstallerSplash::MUIPanelInstallerSplash(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelInstallerSplash::~MUIPanelInstallerSplash() = default;

bool MUIPanelInstallerSplash::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM

namespace SASM {
bool MUIPanelInstallerSplash::InstallDoneCallback(MUIPanelProgress*, int32_t, int32_t, void*) { return false; }
}  // namespace SASM
