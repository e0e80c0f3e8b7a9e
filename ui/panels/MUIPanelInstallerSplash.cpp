#include "ui/panels/MUIPanelInstallerSplash.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/SettingsTree.h"
#include "ui/LocaleMetrics.h"
#include "ui/LocalizedText.h"
#include "ui/MButton.h"
#include "ui/MCheckboxButton.h"
#include "ui/MScale9Data.h"
#include "ui/MScale9Section.h"
#include "ui/MTextArea.h"
#include "ui/MTooltipArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/panels/MUIPanelConflicts.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {

namespace {

constexpr uint32_t kLicenseLabelString = 4;
constexpr uint32_t kInstallingString = 5;
constexpr uint32_t kInstalledString = 7;
constexpr uint32_t kLicenseLinkString = 19;
constexpr uint32_t kVersionTitleString = 29;
constexpr uint32_t kInstallTipString = 38;
constexpr uint32_t kOtherPlayerString = 72;
constexpr char16_t kAutoExitDelayKey[] = u"AutoExitDelay";
// Not the "ExpressInstallURL" the shim opens: a run that names this one only comes to the front.
constexpr char16_t kExpressInstallerKey[] = u"ExpressInstallerURL";

const SettingsNode* Setting(HostCallbacks& host, const char16_t* key) {
  SettingsTree* settings = host.GetSettings();
  return settings ? FindSetting(*settings, MString(key)) : nullptr;
}

// Decimal digits with an optional minus sign; what follows them is ignored.
int32_t ParseSigned(const MString& text) {
  std::u16string_view digits = text.View();
  const bool negative = !digits.empty() && digits.front() == u'-';
  if (negative) digits.remove_prefix(1);
  uint32_t value = 0;
  for (char16_t c : digits) {
    if (c < u'0' || c > u'9') break;
    value = value * 10 + static_cast<uint32_t>(c - u'0');
  }
  return static_cast<int32_t>(negative ? 0u - value : value);
}

}  // namespace

MUIPanelInstallerSplash::MUIPanelInstallerSplash(MInstallerWindow* window) : MUIPanel(window) {
  void* skin = window->skinImage;
  backgroundData = new MScale9Data(MScale9Data::Make(155, 0, 1, 412, 1, 173, 1, 1, skin, MRegion::kOpaqueStretch));
  background = new MScale9Section(backgroundData, window);
  banner = new MSkinnedSection(window->bannerImage, MSourceRect{0, 0, 400, 130});
  logo = MakeLogo(skin);

  licenseLink = new MTextArea(window, 16, true, false);
  licenseLink->SetText(window->String(kLicenseLinkString));
  licenseLink->format = MTextArea::kWordEllipsis;
  licenseLink->linkTextColor = 16777215;
  licenseLink->linkNormalColor = 12632256;
  licenseLink->linkHoverColor = 16777215;

  licenseCheckbox = MakeCheckbox(window, skin, false);
  licenseCheckbox->controlId = MInstallerWindow::kPanelButtonId;
  licenseCheckbox->label = window->String(kLicenseLabelString);

  licenseLabel = new MTextArea(window, 16, false, false);
  licenseLabel->SetText(window->String(kLicenseLabelString));
  licenseLabel->format = MTextArea::kWordEllipsis;
  // A click on the words is a click on the box.
  licenseLabel->handler = licenseCheckbox->handler;
  licenseLabel->handlerContext = licenseCheckbox->handlerContext;

  installTooltip = new MTooltipArea(window, window->rightButton ? window->rightButton->nativeWindow : nullptr);

  AttachChild(background);
  AttachChild(banner);
  AttachChild(logo);
}

MUIPanelInstallerSplash::~MUIPanelInstallerSplash() {
  DropControls();
  delete backgroundData;
}

// The controls go with the panel's first hiding and with the panel.
void MUIPanelInstallerSplash::DropControls() {
  DetachAndDelete(licenseCheckbox);
  DetachAndDelete(licenseLink);
  DetachAndDelete(licenseLabel);
  DetachAndDelete(background);
  DetachAndDelete(banner);
  DetachAndDelete(logo);
  if (installTooltip) installTooltip->SetActive(false);
  delete installTooltip;
  installTooltip = nullptr;
}

bool MUIPanelInstallerSplash::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow* w = installerWindow;
  if (id == MInstallerWindow::kWindowEventId) {
    if (message == MInstallerWindow::kShown) {
      if (!licenseCheckbox) return false;  // gone with its first hiding
      AttachChild(licenseCheckbox);
      AttachChild(licenseLink);
      AttachChild(licenseLabel);
      w->title = LocalizedText::Fill(w->String(kVersionTitleString), MString(LocalizedText::kProductVersion));
      w->ApplyTitle();
      installTooltip->SetText(w->String(kInstallTipString));
      installTooltip->SetActive(true);
      w->leftButton->SetVisible(true);
      w->rightButton->SetVisible(true);
      HandleEvent(MInstallerWindow::kPanelButtonId, MButton::kClicked, 0);
      w->SizeFromStrings();
      if (Setting(w->Host(), kExpressInstallerKey) && w->MWindow::Host()) w->MWindow::Host()->BringToFront();
      w->Show(true);
      Resize();
      return true;
    }
    if (message == MInstallerWindow::kResized) {
      Resize();
      return true;
    }
    if (message == MInstallerWindow::kHidden) {
      DropControls();
      return true;
    }
    return false;
  }
  if (message != MButton::kClicked) return false;
  if (id == MInstallerWindow::kPanelButtonId) {
    if (!licenseCheckbox) return false;
    const bool ticked = licenseCheckbox->checked != 0;
    w->SetButtonEnabled(w->rightButton, ticked);
    if (installTooltip) installTooltip->SetActive(!ticked);
    return true;
  }
  if (id == MInstallerWindow::kLeftButtonId) {
    w->DeleteTransientPanels();
    w->ExitInstaller(MInstallerWindow::kExitLeftSplash);
    return true;
  }
  if (id == MInstallerWindow::kRightButtonId) {
    const SettingsNode* delay = Setting(w->Host(), kAutoExitDelayKey);
    if (delay) {
      autoExitTicks = delay->values ? ParseSigned(delay->values->name) : kDefaultAutoExitDelay;
      autoExitTicks = AutoExitTicks(autoExitTicks);
    }
    if (MUIPanelProgress* progress = w->progressPanel) {
      progress->Arm(&MUIPanelInstallerSplash::InstallDoneCallback, this, 0.0f, 100.0f, 2.0f);
      if (progress->titleText) {
        progress->titleText->SetText(w->String(kInstallingString));
        progress->titleText->Layout();
      }
    }
    // This panel loses its controls here; only the window is touched after.
    w->ShowPanel(w->conflictsPanel);
    if (delay) w->rightButton->SetVisible(false);
    return true;
  }
  return false;
}

void MUIPanelInstallerSplash::Resize() {
  if (!licenseCheckbox) return;
  const int32_t w = bounds.Width();
  const int32_t h = bounds.Height();
  const int32_t offset = LocaleMetrics::For(installerWindow->ThreadLocale()).splashTextOffset;
  licenseLink->verticalOffset = offset;
  licenseLabel->verticalOffset = offset;
  background->bounds = MRect::FromSize(0, 0, w, h);
  banner->bounds = MRect::FromSize(115, 55, 400, 130);
  logo->bounds = MRect::FromSize(bounds.left + 10, 1, 47, 71);
  licenseLink->bounds = MRect::FromSize(117, h - 30, w - 48, 20);
  licenseCheckbox->bounds = MRect::FromSize(96, h - 49, 15, 15);
  licenseLabel->bounds = MRect::FromSize(115, h - 50, w - 48, 20);
  if (MButton* right = installerWindow->rightButton)
    installTooltip->bounds = MRect::FromSize(0, 0, right->bounds.Width(), right->bounds.Height());
  for (MRegion* region : {static_cast<MRegion*>(background), static_cast<MRegion*>(banner),
                          static_cast<MRegion*>(logo), static_cast<MRegion*>(licenseLink),
                          static_cast<MRegion*>(licenseCheckbox), static_cast<MRegion*>(licenseLabel),
                          static_cast<MRegion*>(installTooltip)})
    region->Layout();
  licenseCheckbox->SyncNativeWindow();
}

bool MUIPanelInstallerSplash::InstallDoneCallback(MUIPanelProgress* panel, int32_t code, int32_t, void* context) {
  auto* splash = static_cast<MUIPanelInstallerSplash*>(context);
  MInstallerWindow* w = panel->installerWindow;
  HostCallbacks& host = w->Host();
  switch (code) {
    case MUIPanelProgress::kReachedTarget: {
      w->morph->Notify(2, 0);
      MString title;
      // The update choice takes the title's place when it will be offered.
      if (host.SkipsUpdateChoice() || !(host.GetFlags() & MUIPanelProgress::kUpdateChoiceFlag))
        title = LocalizedText::Fill(w->String(kInstalledString), MString(LocalizedText::kProductVersion));
      if (panel->titleText) {
        panel->titleText->SetText(title);
        panel->titleText->Layout();
      }
      if (w->Shim() && w->Shim()->IsBadRealPlayer() && w->messageText) {
        w->messageText->SetText(w->String(kOtherPlayerString));
        w->messageText->SetVisible(true);
        w->messageText->Layout();
      }
      if (host.IsRestartRequired() && w->restartText && w->restartIcon) {
        w->restartText->SetVisible(true);
        w->restartIcon->SetVisible(true);
        w->restartText->verticalOffset = LocaleMetrics::For(w->ThreadLocale()).restartNoteOffset;
        w->restartText->Layout();
      }
      if (splash && splash->autoExitTicks == 0) w->SetButtonEnabled(w->rightButton, true);
      return true;
    }
    case MUIPanelProgress::kStoppedTick:
      if (!splash || splash->autoExitTicks < 1) return true;
      if (--splash->autoExitTicks > 0) return true;
      [[fallthrough]];
    case MUIPanelProgress::kDone:
      if (w->Shim()) w->Shim()->OpenExpressInstallUrl(w->handle);
      w->DeleteTransientPanels();
      w->ExitInstaller(MInstallerWindow::kExitFinished);
      return true;
    default:
      return false;
  }
}

}  // namespace SASM
