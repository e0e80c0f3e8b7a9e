#include "ui/panels/MUIPanelUninstallerSplash.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelUninstallerSplash::MUIPanelUninstallerSplash(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelUninstallerSplash::~MUIPanelUninstallerSplash() = default;

bool MUIPanelUninstallerSplash::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM

namespace SASM {
bool MUIPanelUninstallerSplash::UninstallDoneCallback(MUIPanelProgress*, int32_t, int32_t, void*) { return false; }
void MUIPanelUninstallerSplash::ArmUninstall(MInstallerWindow*) {}
}  // namespace SASM
