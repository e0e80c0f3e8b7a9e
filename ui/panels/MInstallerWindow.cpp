#include "ui/panels/MInstallerWindow.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "ui/LocalizedText.h"
#include "ui/MButton.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Data.h"
#include "ui/MScale9Section.h"
#include "ui/MSkinnedSection.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MUIPanelAutoUpdate.h"
#include "ui/panels/MUIPanelConflicts.h"
#include "ui/panels/MUIPanelFailure.h"
#include "ui/panels/MUIPanelInstallerSplash.h"
#include "ui/panels/MUIPanelMaintain.h"
#include "ui/panels/MUIPanelProgress.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"

namespace SASM {

namespace {

// Strings of the window itself.
constexpr uint32_t kQuitString = 17;
constexpr uint32_t kInstallString = 18;
constexpr uint32_t kRemindLaterString = 34;
constexpr uint32_t kDownloadString = 39;
constexpr uint32_t kRestartString = 89;
// The one run whose left button offers to come back later.
constexpr uint32_t kRemindLaterFlags = 130;
constexpr uint32_t kRemindLaterSource = 4;

}  // namespace

MInstallerWindow::MInstallerWindow(MorphUI* ui) : MWindow(ui) { backgroundColor = kBackgroundColour; }

MInstallerWindow::~MInstallerWindow() {
  // Panels first: the one shown still hangs under root, and their controls under them.
  MUIPanel* panels[] = {installerSplash, uninstallerSplash, maintainPanel, conflictsPanel,
                        progressPanel,   failurePanel,      autoUpdatePanel};
  for (MUIPanel* panel : panels) delete panel;
  installerSplash = nullptr;
  uninstallerSplash = nullptr;
  maintainPanel = nullptr;
  conflictsPanel = nullptr;
  progressPanel = nullptr;
  failurePanel = nullptr;
  autoUpdatePanel = nullptr;
  delete restartText;
  delete messageText;
  delete restartIcon;
  delete leftButton;
  delete rightButton;
  delete bottomBar;
  delete focusRing;
  delete focusRingData;
  delete root;
}

void MInstallerWindow::HandleEvent(int32_t id, int32_t message, intptr_t param) {
  if (id == kWindowEventId) {
    if (message == kClosing)
      DeleteTransientPanels();
    else if (message == kShown)
      Create();
    else if (message == kResized)
      Resize();
    return;
  }
  MUIPanel* active = ActivePanel();
  if (id == kCommandEventId && message == kFinish) {
    if (!active || !active->HandleEvent(id, message, param)) ExitInstaller(static_cast<int32_t>(param));
    return;
  }
  if (id == kCommandEventId && message == kOpenPanel) {
    if (MUIPanel* panel = PanelFor(param)) ShowPanel(panel);
    return;
  }
  if (id == kFailureEventId) {
    if (failurePanel) ShowPanel(failurePanel);
    if (MUIPanel* now = ActivePanel()) now->HandleEvent(id, message, param);
    return;
  }
  if (active) active->HandleEvent(id, message, param);
}

MUIPanel* MInstallerWindow::PanelFor(intptr_t number) {
  switch (number) {
    case 0:
      if (!installerSplash) installerSplash = new MUIPanelInstallerSplash(this);
      return installerSplash;
    case 1:
      if (!uninstallerSplash) uninstallerSplash = new MUIPanelUninstallerSplash(this);
      return uninstallerSplash;
    case 2:
      if (!maintainPanel) maintainPanel = new MUIPanelMaintain(this);
      return maintainPanel;
    case 3:
      if (!autoUpdatePanel) autoUpdatePanel = new MUIPanelAutoUpdate(this);
      return autoUpdatePanel;
    default:
      return nullptr;
  }
}

void MInstallerWindow::Create() {
  // A second (2, 1, 0) would build everything twice over the first.
  if (root) return;
  IWindowSystem& system = morph->System();
  skinImage = system.LoadSkinImage(ImageForm::kPlain, kSkinImageId);
  bannerImage = system.LoadSkinImage(ImageForm::kPlain, kBannerImageId);

  root = new MSkinnedSection();
  AttachRegion(root);

  bottomBarData_ = MScale3Data{skinImage, {1, 0, 1, 68}, {2, 0, 1, 68}, {3, 0, 1, 68}, 2};
  bottomBar = new MScale3Section(&bottomBarData_, this);
  AttachRegion(bottomBar);

  focusRingData = new MScale9Data(MScale9Data::Make(13, 44, 7, 1, 7, 7, 1, 7, skinImage, MRegion::kAlphaBlend));
  focusRing = new MScale9Section(focusRingData, this);
  focusRing->bounds = MRect::FromSize(230, 192, 25, 25);
  focusRing->Layout();
  AttachRegion(focusRing);
  ringVisible = 0;
  focusRing->SetVisible(false);

  HostCallbacks& host = Host();
  const bool remindLater = host.GetFlags() == kRemindLaterFlags && host.GetInstallSource() == kRemindLaterSource;
  leftButton = MakeButton(this, skinImage, String(remindLater ? kRemindLaterString : kQuitString));
  leftButton->controlId = kLeftButtonId;
  leftButton->bounds = MRect::FromSize(94, 18, 140, 33);
  leftButton->SetVisible(false);
  bottomBar->AttachChild(leftButton);

  rightButton = MakeButton(this, skinImage, String(kInstallString));
  rightButton->controlId = kRightButtonId;
  rightButton->SetVisible(false);
  bottomBar->AttachChild(rightButton);

  conflictsPanel = new MUIPanelConflicts(this);
  progressPanel = new MUIPanelProgress(this);
  failurePanel = new MUIPanelFailure(this);

  // The note moves aside when another player's warning takes its place.
  const bool otherPlayer = Shim() && Shim()->IsBadRealPlayer();
  const int32_t dx = otherPlayer ? 250 : 0;
  const int32_t dy = otherPlayer ? 20 : 0;
  restartText = new MTextArea(this, 16, false, false);
  restartText->SetText(String(kRestartString));
  restartText->format = MTextArea::kLeft;
  bottomBar->AttachChild(restartText);
  restartText->SetVisible(false);
  restartText->bounds = MRect::FromEdges(117 + dx, 25 + dy, 400 + dx, 42 + dy);

  messageText = new MTextArea(this, 16, true, false);
  messageText->format = MTextArea::kLeft;
  bottomBar->AttachChild(messageText);
  messageText->SetVisible(false);
  messageText->bounds = MRect::FromEdges(117, 10, 550, 82);

  restartIcon = new MSkinnedSection(skinImage, MSourceRect{5, 30, 13, 13});
  bottomBar->AttachChild(restartIcon);
  restartIcon->SetVisible(false);
  restartIcon->bounds = MRect::FromEdges(97 + dx, 25 + dy, 112 + dx, 40 + dy);

  Resize();
}

void MInstallerWindow::Resize() {
  if (!root) return;
  // The window's rectangle holds its client size in right and bottom.
  const int32_t W = rect.right;
  const int32_t H = rect.bottom;
  bottomBar->bounds = MRect::FromSize(0, H - kBarHeight, W, 67);
  rightButton->bounds = MRect::FromSize(bottomBar->bounds.right - 156, 18, 140, 33);
  root->bounds = MRect::FromSize(0, 0, W, H + 1 + (bottomBar->bounds.top - bottomBar->bounds.bottom));
  const uint32_t mode = Host().GetSessionMode();
  if ((mode == 1 || mode == 2) && rightButton->labelText) rightButton->labelText->SetText(String(kDownloadString));
  if (rightButton->labelText) rightButton->labelText->Layout();
  rightButton->Layout();
  if (leftButton->labelText) leftButton->labelText->Layout();
  leftButton->Layout();
  bottomBar->Layout();
  if (MUIPanel* active = ActivePanel()) {
    active->bounds = root->bounds;
    active->HandleEvent(kWindowEventId, kResized, 0);
  }
  if (ringVisible) SetFocusRegion(focusRegion, true);
}

void MInstallerWindow::SetFocusRegion(MRegion* region, bool showRing) {
  focusRegion = region;
  if (focusRing) {
    if (region && showRing) {
      // The ring's corners sit 5 pixels outside the control.
      const MRect around = region->AbsoluteBounds();
      focusRing->Invalidate();
      focusRing->bounds = MRect::FromEdges(around.left - 5, around.top - 5, around.right + 5, around.bottom + 5);
      focusRing->Layout();
      focusRing->SetVisible(true);
      focusRing->Invalidate();
    } else if (focusRing->visible) {
      focusRing->Invalidate();
      focusRing->SetVisible(false);
    }
  }
  ringVisible = region && showRing ? 1 : 0;
  if (MWindow::Host()) MWindow::Host()->SetPlatformFocus(region ? region->nativeWindow : nullptr);
}

MUIPanel* MInstallerWindow::ActivePanel() const {
  return root ? static_cast<MUIPanel*>(root->firstChild) : nullptr;
}

void MInstallerWindow::ShowPanel(MUIPanel* panel) {
  if (!panel || !root) return;
  MRect area = rect;
  area.left = 0;
  area.top = 0;
  MUIPanel* active = ActivePanel();
  if (active != panel) {
    if (active) {
      active->HandleEvent(kWindowEventId, kHidden, 0);
      active->Detach();
    }
    root->AttachChild(panel);
    panel->bounds = area;
    panel->bounds.bottom += bottomBar->bounds.top - bottomBar->bounds.bottom + 1;
    panel->HandleEvent(kWindowEventId, kShown, 0);
  }
  if (MWindow::Host()) MWindow::Host()->InvalidateRect(area);
}

void MInstallerWindow::SetButtonEnabled(MButton* button, bool on) {
  if (!button) return;
  button->SetEnabled(on);
  if (button->labelText) {
    button->labelText->alpha = on ? 255 : 128;
    button->labelText->Layout();
  }
  button->Layout();
}

void MInstallerWindow::SizeFromStrings() {
  const int32_t width = static_cast<int32_t>(LocalizedText::WindowWidth(String(LocalizedText::kWidthId)));
  rect = MRect::FromSize(0, 0, width, kWindowHeight);
  ApplyRect(false, true);
}

void MInstallerWindow::DeleteTransientPanels() {
  // Either may be the one shown: take it off root before it goes.
  for (MUIPanel* panel : {static_cast<MUIPanel*>(failurePanel), static_cast<MUIPanel*>(autoUpdatePanel)}) {
    if (panel && panel == ActivePanel()) panel->Detach();
    delete panel;
  }
  failurePanel = nullptr;
  autoUpdatePanel = nullptr;
}

void MInstallerWindow::SetButtonLabel(MButton* button, const MString& text) {
  if (!button) return;
  if (button->labelText) button->labelText->SetText(text);
  button->label = text;
  button->Layout();
}

MString MInstallerWindow::String(uint32_t id) {
  MString out;
  return morph->GetString(out, id);
}

HostCallbacks& MInstallerWindow::Host() const { return *morph->host; }

LumenBrokerShim* MInstallerWindow::Shim() const { return morph->host->shim; }

uint32_t MInstallerWindow::ThreadLocale() const { return morph->System().ThreadLocale(); }

}  // namespace SASM
