#include "ui/panels/MUIPanelMaintain.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelMaintain::MUIPanelMaintain(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelMaintain::~MUIPanelMaintain() = default;

bool MUIPanelMaintain::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM
