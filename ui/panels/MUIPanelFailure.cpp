#include "ui/panels/MUIPanelFailure.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelFailure::MUIPanelFailure(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelFailure::~MUIPanelFailure() = default;

bool MUIPanelFailure::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM
