#include "ui/panels/MUIPanelConflicts.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelConflicts::MUIPanelConflicts(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelConflicts::~MUIPanelConflicts() = default;

bool MUIPanelConflicts::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM

namespace SASM {
MUIPanelConflicts::offendingApp::offendingApp(MInstallerWindow* window, void*) : installerWindow(window) {}
MUIPanelConflicts::offendingApp::~offendingApp() = default;
void MUIPanelConflicts::offendingApp::SetName(const MString&) {}
bool MUIPanelConflicts::RefreshConflicts(uint32_t) { return false; }
bool MUIPanelConflicts::IsControlFileLocked() { return false; }
}  // namespace SASM
