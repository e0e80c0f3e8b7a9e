#include "ui/panels/MUIPanelAutoUpdate.h"

#include "ui/panels/MInstallerWindow.h"

namespace SASM {

MUIPanelAutoUpdate::MUIPanelAutoUpdate(MInstallerWindow* window) : MUIPanel(window) {}

MUIPanelAutoUpdate::~MUIPanelAutoUpdate() = default;

bool MUIPanelAutoUpdate::HandleEvent(int32_t, int32_t, intptr_t) { return false; }

}  // namespace SASM

namespace SASM {
const char16_t* MUIPanelAutoUpdate::KindWord(uint32_t mask) {
  if (mask & 8) return u"activex";
  if (mask & 16) return u"plugin";
  if (mask & 32768) return u"ppapi";
  return u"";
}
}  // namespace SASM
