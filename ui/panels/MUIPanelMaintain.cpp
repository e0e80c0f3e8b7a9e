#include "ui/panels/MUIPanelMaintain.h"

#include "ui/MButton.h"
#include "ui/MTextArea.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/panels/MUIPanelProgress.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"

namespace SASM {

namespace {

constexpr uint32_t kRemovesString = 11;
constexpr uint32_t kDoneString = 16;
constexpr uint32_t kReinstallString = 20;
constexpr uint32_t kUninstallString = 21;
constexpr uint32_t kUpgradeString = 24;

MTextArea* SmallText(MInstallerWindow* window, uint32_t id, const MRect& at) {
  auto* text = new MTextArea(window, 13, false, false);
  text->SetText(window->String(id));
  text->format = MTextArea::kVerticalCentre;
  text->bounds = at;
  return text;
}

MButton* PanelButton(MInstallerWindow* window, uint32_t id, int32_t controlId, const MRect& at) {
  MButton* button = MakeButton(window, window->skinImage, window->String(id));
  button->controlId = controlId;
  button->bounds = at;
  return button;
}

}  // namespace

MUIPanelMaintain::MUIPanelMaintain(MInstallerWindow* window) : MUIPanel(window) {
  bounds = MRect::FromSize(0, 0, 414, 243);
  uninstallText = SmallText(window, kRemovesString, MRect::FromSize(169, 69, 228, 33));
  statusText = SmallText(window, kUpgradeString, MRect::FromSize(169, 19, 228, 33));
  uninstallButton = PanelButton(window, kUninstallString, MInstallerWindow::kSecondPanelButtonId,
                                MRect::FromSize(19, 69, 140, 33));
  reinstallButton =
      PanelButton(window, kReinstallString, MInstallerWindow::kPanelButtonId, MRect::FromSize(19, 19, 140, 33));
  for (MRegion* region : {static_cast<MRegion*>(uninstallText), static_cast<MRegion*>(statusText),
                          static_cast<MRegion*>(uninstallButton), static_cast<MRegion*>(reinstallButton)})
    region->Layout();
}

MUIPanelMaintain::~MUIPanelMaintain() {
  for (MRegion* region : {static_cast<MRegion*>(uninstallText), static_cast<MRegion*>(statusText),
                          static_cast<MRegion*>(uninstallButton), static_cast<MRegion*>(reinstallButton)}) {
    region->Detach();
    delete region;
  }
}

bool MUIPanelMaintain::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow* w = installerWindow;
  if (id == MInstallerWindow::kWindowEventId) {
    if (message == MInstallerWindow::kShown) {
      AttachChild(uninstallText);
      AttachChild(statusText);
      AttachChild(uninstallButton);
      AttachChild(reinstallButton);
      w->leftButton->SetVisible(false);
      w->rightButton->SetVisible(true);
      w->SetButtonLabel(w->rightButton, w->String(kDoneString));
      return true;
    }
    if (message == MInstallerWindow::kHidden) {
      for (MRegion* region : {static_cast<MRegion*>(uninstallText), static_cast<MRegion*>(statusText),
                              static_cast<MRegion*>(uninstallButton), static_cast<MRegion*>(reinstallButton)})
        region->Detach();
      return true;
    }
    return false;
  }
  if (message != MButton::kClicked) return false;
  switch (id) {
    case MInstallerWindow::kRightButtonId:
      w->ExitInstaller(MInstallerWindow::kExitFinished);
      return true;
    case MInstallerWindow::kPanelButtonId:
      // REINSTALL has no action on this page.
      return true;
    case MInstallerWindow::kSecondPanelButtonId:
      // Past the conflicts page: nothing is checked before the removal.
      MUIPanelUninstallerSplash::ArmUninstall(w);
      w->ShowPanel(w->progressPanel);
      return true;
    default:
      return false;
  }
}

}  // namespace SASM
