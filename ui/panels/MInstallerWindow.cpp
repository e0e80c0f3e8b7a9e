#include "ui/panels/MInstallerWindow.h"

#include "engine/HostCallbacks.h"
#include "ui/MorphUI.h"

namespace SASM {

MInstallerWindow::MInstallerWindow(MorphUI* ui) : MWindow(ui) { backgroundColor = kBackgroundColour; }

MInstallerWindow::~MInstallerWindow() = default;

void MInstallerWindow::HandleEvent(int32_t, int32_t, intptr_t) {}

void MInstallerWindow::SetFocusRegion(MRegion* region, bool) { focusRegion = region; }

MUIPanel* MInstallerWindow::ActivePanel() const { return nullptr; }

void MInstallerWindow::ShowPanel(MUIPanel*) {}

void MInstallerWindow::SetButtonEnabled(MButton*, bool) {}

void MInstallerWindow::SizeFromStrings() {}

void MInstallerWindow::DeleteTransientPanels() {}

void MInstallerWindow::SetButtonLabel(MButton*, const MString&) {}

MString MInstallerWindow::String(uint32_t id) {
  MString out;
  return morph->GetString(out, id);
}

HostCallbacks& MInstallerWindow::Host() const { return *morph->host; }

LumenBrokerShim* MInstallerWindow::Shim() const { return morph->host->shim; }

uint32_t MInstallerWindow::ThreadLocale() const { return morph->System().ThreadLocale(); }

}  // namespace SASM
