#include "ui/panels/MUIPanelUninstallerSplash.h"

#include "engine/HostCallbacks.h"
#include "ui/MButton.h"
#include "ui/MScale9Data.h"
#include "ui/MScale9Section.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/panels/MUIPanelConflicts.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {

namespace {

constexpr uint32_t kUninstalledString = 10;
constexpr uint32_t kRemovesString = 11;
constexpr uint32_t kUninstallingString = 12;
constexpr uint32_t kUninstallString = 21;
constexpr uint32_t kUninstallTitleString = 30;
constexpr uint32_t kBodyFormat = 48;

}  // namespace

MUIPanelUninstallerSplash::MUIPanelUninstallerSplash(MInstallerWindow* window) : MUIPanel(window) {
  void* skin = window->skinImage;
  backgroundData = new MScale9Data(MScale9Data::Make(33, 123, 1, 120, 1, 1, 50, 1, skin, MRegion::kOpaqueStretch));
  background = new MScale9Section(backgroundData, window);
  logo = MakeLogo(skin);
  banner = new MSkinnedSection(window->bannerImage, MSourceRect{0, 0, 400, 130});
  bodyText = new MTextArea(window, 17, false, false);
  bodyText->SetText(window->String(kRemovesString));
  bodyText->format = kBodyFormat;
  AttachChild(background);
  AttachChild(logo);
  AttachChild(banner);
}

MUIPanelUninstallerSplash::~MUIPanelUninstallerSplash() {
  for (MRegion* region : {static_cast<MRegion*>(bodyText), static_cast<MRegion*>(background),
                          static_cast<MRegion*>(logo), static_cast<MRegion*>(banner)}) {
    region->Detach();
    delete region;
  }
  delete backgroundData;
}

bool MUIPanelUninstallerSplash::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow* w = installerWindow;
  if (id == MInstallerWindow::kWindowEventId) {
    switch (message) {
      case MInstallerWindow::kShown:
        AttachChild(bodyText);
        w->title = w->String(kUninstallTitleString);
        w->ApplyTitle();
        w->leftButton->SetVisible(true);
        w->rightButton->SetVisible(true);
        w->SetButtonLabel(w->rightButton, w->String(kUninstallString));
        w->SizeFromStrings();
        w->Show(true);
        Resize();
        return true;
      case MInstallerWindow::kResized:
        Resize();
        return true;
      case MInstallerWindow::kHidden:
        bodyText->Detach();
        return true;
      default:
        return false;
    }
  }
  if (message != MButton::kClicked) return false;
  if (id == MInstallerWindow::kLeftButtonId) {
    w->ExitInstaller(MInstallerWindow::kExitFinished);
    return true;
  }
  if (id == MInstallerWindow::kRightButtonId) {
    ArmUninstall(w);
    w->ShowPanel(w->conflictsPanel);
    return true;
  }
  return false;
}

void MUIPanelUninstallerSplash::Resize() {
  const int32_t w = bounds.Width();
  const int32_t h = bounds.Height();
  background->bounds = MRect::FromSize(0, 0, w, h);
  logo->bounds = MRect::FromSize(bounds.left + 10, 1, 47, 71);
  banner->bounds = MRect::FromSize(115, 55, 400, 130);
  bodyText->bounds = MRect::FromSize(96, 220, w - 29, h - 115);
  for (MRegion* region : {static_cast<MRegion*>(background), static_cast<MRegion*>(logo),
                          static_cast<MRegion*>(banner), static_cast<MRegion*>(bodyText)})
    region->Layout();
}

void MUIPanelUninstallerSplash::ArmUninstall(MInstallerWindow* window) {
  MUIPanelProgress* progress = window->progressPanel;
  if (!progress) return;
  progress->Arm(&MUIPanelUninstallerSplash::UninstallDoneCallback, nullptr, 100.0f, 0.0f, -2.0f);
  if (progress->titleText) {
    progress->titleText->SetText(window->String(kUninstallingString));
    progress->titleText->Layout();
  }
}

bool MUIPanelUninstallerSplash::UninstallDoneCallback(MUIPanelProgress* panel, int32_t code, int32_t, void*) {
  MInstallerWindow* w = panel->installerWindow;
  switch (code) {
    case MUIPanelProgress::kDone:
      w->ExitInstaller(MInstallerWindow::kExitFinished);
      return true;
    case MUIPanelProgress::kReachedTarget:
      w->Host().BeginRemoval();
      w->morph->Notify(3, 0);
      if (panel->titleText) {
        panel->titleText->SetText(w->String(kUninstalledString));
        panel->titleText->Layout();
      }
      w->SetButtonEnabled(w->rightButton, true);
      return true;
    default:
      // No unattended exit after an uninstall.
      return false;
  }
}

}  // namespace SASM
