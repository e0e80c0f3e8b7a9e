#include "bench/PanelStage.h"

#include <utility>

#include "engine/ErrorCodes.h"
#include "engine/SettingsTree.h"
#include "engine/win32/Win32LumenBrokerShim.h"
#include "engine/win32/Win32Platform.h"
#include "host/HostOptions.h"
#include "host/MemoryMessageLog.h"
#include "host/ReferenceHost.h"
#include "ui/LocalizedText.h"
#include "ui/MCheckboxButton.h"
#include "ui/panels/MUIPanelAutoUpdate.h"
#include "ui/panels/MUIPanelConflicts.h"
#include "ui/panels/MUIPanelFailure.h"
#include "ui/panels/MUIPanelInstallerSplash.h"
#include "ui/panels/MUIPanelMaintain.h"
#include "ui/panels/MUIPanelProgress.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"
#include "ui/win32/GdiDrawSurface.h"
#include "ui/win32/Win32WindowSystem.h"

namespace SASM {

// The failure panel shows what the host's log makes of an entry. This log
// words the entries with the module's own messages, so each language shows its
// own text: a code with a message of its own gets it, any other the generic
// "Error '^'" with the code.
class GalleryLog : public MemoryMessageLog {
 public:
  MString& Format(MString& out, HostCallbacks* host, int32_t, int32_t code, MString text, int32_t) override {
    uint32_t id = 53;
    MString value = MString::FromNumber(code);
    if (code == ErrorCode::kRegisterServerMissing) {
      id = 64;
    } else if (code == ErrorCode::kLockedSystemFileQueued) {
      id = 74;
    } else if (code == ErrorCode::kControlNotLoaded) {
      id = 63;
      value = text;
    }
    MString message;
    host->LoadStringFallback(message, id, 1);
    out = LocalizedText::Fill(message, value);
    return out;
  }
};

// The reference host's answers from settings text, with the few a state sets
// outright: flags, install source, the update dialog's data and the log.
class GalleryHost : public ReferenceHost {
 public:
  GalleryHost() : ReferenceHost(HostOptions{}, MString(u"")) {}

  void ReportMessage(int64_t, int32_t severity, int32_t code, MString text) override { log.Add(severity, code, text); }
  MessageLog* GetMessageLog() override { return &log; }
  uint32_t GetFlags() override { return flags; }
  uint32_t GetInstallSource() override { return installSource; }
  bool GetUpdateDialogData(MStringList& properties) override {
    for (const auto& [key, value] : updateData)
      properties.Add(MString(std::u16string_view(key)), MString(std::u16string_view(value)));
    return updateDataAnswers;
  }

  // A Host block, or start-up properties.
  void Settings(const char16_t* text) { ParseSettings(*GetSettings(), MString(text)); }

  uint32_t flags = 0;
  uint32_t installSource = 0;
  bool updateDataAnswers = false;
  std::vector<std::pair<std::u16string, std::u16string>> updateData;
  GalleryLog log;
};

// The module's shim with the running programs replaced by a list, and the
// browser left closed.
class GalleryShim : public Win32LumenBrokerShim {
 public:
  using Win32LumenBrokerShim::Win32LumenBrokerShim;

  MStringList* FindConflicts(uint32_t) override {
    auto* list = new MStringList();
    for (const auto& name : conflicts) list->Add(MString(std::u16string_view(name)));
    return list;
  }
  bool OpenExpressInstallUrl(void*) override { return true; }
  bool OpenUrl(void*, MString) override { return true; }
  bool IsBadRealPlayer() override { return false; }

  std::vector<std::u16string> conflicts;
};

namespace {

const char16_t* const kSevenPrograms[] = {u"Skylark Browser",   u"Quillpad Writer", u"Ledgerly Sheets",
                                          u"Slidewell Presenter", u"Inkwell Notes",  u"Tessellate Maps",
                                          u"Harbor Mail"};

void NoScript(GalleryHost&, GalleryShim&) {}

void RestartScript(GalleryHost& host, GalleryShim&) { host.Settings(u"Host { RestartRequired 1; };"); }

void UpdateChoiceScript(GalleryHost& host, GalleryShim&) { host.flags = MUIPanelProgress::kUpdateChoiceFlag; }

void TwoConflictsScript(GalleryHost&, GalleryShim& shim) { shim.conflicts = {kSevenPrograms[0], kSevenPrograms[1]}; }

void SevenConflictsScript(GalleryHost&, GalleryShim& shim) {
  shim.conflicts.assign(std::begin(kSevenPrograms), std::end(kSevenPrograms));
}

void ErrorScript(GalleryHost& host, GalleryShim&) {
  // The walk back passes the later logged entry and stops at the serious one.
  host.ReportMessage(0, Severity::kLogged, ErrorCode::kRegisterServerFailed, MString(u"C:\\Lumen\\LumenCtrl.ocx 80004005"));
  host.ReportMessage(0, Severity::kUserMustKnow, ErrorCode::kRegisterServerMissing, MString(u"C:\\Lumen\\LumenCtrl.ocx 7f"));
  host.ReportMessage(0, Severity::kLogged, ErrorCode::kRegistryWriteFailed, MString(u"Software\\Lumen/Version 5"));
}

void AttentionScript(GalleryHost& host, GalleryShim&) {
  host.ReportMessage(0, Severity::kUserMustKnow, ErrorCode::kLockedSystemFileQueued,
                     MString(u"C:\\windows\\system32\\Lumen\\LumenUtil_ActiveX.exe"));
}

void UpdateMessageScript(GalleryHost& host, GalleryShim&) {
  // A "remind me later" run, with the host's own words and size.
  host.flags = 130;
  host.installSource = 4;
  host.updateDataAnswers = true;
  host.updateData = {{u"message", u"Lumen Player 28.0 starts faster and plays lumens in higher colour. "
                                  u"<a href='https://lumen.example/whatsnew'>What is new</a>"},
                     {u"size", u"560"},
                     {u"size", u"290"},
                     {u"autoUpdateMode", u"1"}};
}

void UpdateFallbackScript(GalleryHost& host, GalleryShim&) {
  host.Settings(u"Host { SessionMode 2; };");
  host.updateDataAnswers = false;
}

void OpenInstaller(PanelStage& stage) { stage.Post(MInstallerWindow::kCommandEventId, MInstallerWindow::kOpenPanel, 0); }

void TickLicence(PanelStage& stage) {
  OpenInstaller(stage);
  MUIPanelInstallerSplash* splash = stage.Window().installerSplash;
  if (!splash || !splash->licenseCheckbox) return;
  MCheckboxButton* box = splash->licenseCheckbox;
  stage.Click(box);
  // The pointer has gone on: the picture shows the box's plain look.
  box->pressState = MButton::kIdle;
  box->ShowLook(MButton::kNormalLook);
}

void StartInstall(PanelStage& stage) {
  TickLicence(stage);
  stage.Post(MInstallerWindow::kRightButtonId, MButton::kClicked);
}

void HalfInstalled(PanelStage& stage) {
  StartInstall(stage);
  stage.Ticks(25);
}

void Installed(PanelStage& stage) {
  StartInstall(stage);
  stage.TicksUntilStopped();
}

void OpenUninstaller(PanelStage& stage) { stage.Post(MInstallerWindow::kCommandEventId, MInstallerWindow::kOpenPanel, 1); }

void OpenMaintain(PanelStage& stage) {
  // The panel sizes nothing and leaves the window as the host had it: here,
  // the panel's own 414 by 243 above the bottom bar, which takes 66 rows of the 309.
  MInstallerWindow& window = stage.Window();
  window.rect = MRect{0, 0, 414, 309};
  window.ApplyRect(false, true);
  window.Show(true);
  stage.Post(MInstallerWindow::kCommandEventId, MInstallerWindow::kOpenPanel, 2);
}

void HalfUninstalled(PanelStage& stage) {
  OpenMaintain(stage);
  stage.Post(MInstallerWindow::kSecondPanelButtonId, MButton::kClicked);
  stage.Ticks(25);
}

void Uninstalled(PanelStage& stage) {
  OpenMaintain(stage);
  stage.Post(MInstallerWindow::kSecondPanelButtonId, MButton::kClicked);
  stage.TicksUntilStopped();
}

void ShowFailure(PanelStage& stage) { stage.Post(MInstallerWindow::kFailureEventId, MInstallerWindow::kShowError, 0); }

void OpenAutoUpdate(PanelStage& stage) { stage.Post(MInstallerWindow::kCommandEventId, MInstallerWindow::kOpenPanel, 3); }

}  // namespace

const std::vector<PanelState>& PanelStage::States() {
  static const std::vector<PanelState> states = {
      {"installer-splash-clear", "installer-splash", NoScript, OpenInstaller},
      {"installer-splash-ticked", "installer-splash", NoScript, TickLicence},
      {"uninstaller-splash", "uninstaller-splash", NoScript, OpenUninstaller},
      {"maintain", "maintain", NoScript, OpenMaintain},
      {"conflicts-two", "conflicts", TwoConflictsScript, StartInstall},
      {"conflicts-seven", "conflicts", SevenConflictsScript, StartInstall},
      {"progress-installing", "progress", NoScript, HalfInstalled},
      {"progress-installed", "progress", NoScript, Installed},
      {"progress-installed-restart", "progress", RestartScript, Installed},
      {"progress-update-choice", "progress", UpdateChoiceScript, Installed},
      {"progress-uninstalling", "progress", NoScript, HalfUninstalled},
      {"progress-uninstalled", "progress", NoScript, Uninstalled},
      {"failure-error", "failure", ErrorScript, ShowFailure},
      {"failure-uninstaller-attention", "failure", AttentionScript, ShowFailure},
      {"auto-update-message", "auto-update", UpdateMessageScript, OpenAutoUpdate},
      {"auto-update-fallback", "auto-update", UpdateFallbackScript, OpenAutoUpdate},
  };
  return states;
}

const PanelState* PanelStage::Find(const std::string& name) {
  for (const PanelState& state : States())
    if (name == state.name) return &state;
  return nullptr;
}

PanelStage::PanelStage(HMODULE module, const PanelState& state) : state_(state), module_(module) {}

PanelStage::~PanelStage() {
  // The window asks the host and the shim until it is gone.
  ui_.reset();
  delete shim_;
}

void PanelStage::Build() {
  host_ = std::make_unique<GalleryHost>();
  host_->resourceModule = module_;
  shim_ = new GalleryShim(host_.get(), Win32Platform());
  LumenBrokerShim::WithEngine(shim_);
  host_->shim = shim_;
  state_.script(*host_, *shim_);

  ui_ = std::make_unique<MorphUI>(host_.get(), module_, std::make_unique<Win32WindowSystem>(host_.get(), module_));
  ui_->SetEventCallback(OnNotify, this);
  window_ = new MInstallerWindow(ui_.get());
  ui_->SetWindow(window_);
  state_.drive(*this);
  Deliver();
  Settle();
}

bool PanelStage::Reached() const {
  const MInstallerWindow& w = *window_;
  const std::string panel = state_.panel;
  MUIPanel* expected = panel == "installer-splash"     ? static_cast<MUIPanel*>(w.installerSplash)
                       : panel == "uninstaller-splash" ? static_cast<MUIPanel*>(w.uninstallerSplash)
                       : panel == "maintain"           ? static_cast<MUIPanel*>(w.maintainPanel)
                       : panel == "conflicts"          ? static_cast<MUIPanel*>(w.conflictsPanel)
                       : panel == "progress"           ? static_cast<MUIPanel*>(w.progressPanel)
                       : panel == "failure"            ? static_cast<MUIPanel*>(w.failurePanel)
                       : panel == "auto-update"        ? static_cast<MUIPanel*>(w.autoUpdatePanel)
                                                       : nullptr;
  return expected && w.ActivePanel() == expected;
}

int32_t PanelStage::OnNotify(MorphUI*, int32_t code, intptr_t value, void*) {
  // The installed kinds: the control alone.
  if (code == 6 && value) *reinterpret_cast<uint32_t*>(value) = 8;
  return 0;
}

void PanelStage::Post(int32_t id, int32_t message, intptr_t param) {
  ui_->PostEvent(id, message, param);
  Deliver();
}

void PanelStage::Deliver() {
  HWND hwnd = static_cast<HWND>(window_->handle);
  MSG message;
  // Bounded: a handler that posts at every event would otherwise keep this going.
  for (int i = 0; i < 1000 && PeekMessageW(&message, hwnd, MWindow::kUserBase, MWindow::kUserLast, PM_REMOVE); ++i)
    DispatchMessageW(&message);
}

void PanelStage::Click(MRegion* region) {
  if (!region) return;
  int32_t x = region->bounds.Width() / 2, y = region->bounds.Height() / 2;
  for (MRegion* r = region; r; r = r->parent) {
    x += r->bounds.left;
    y += r->bounds.top;
  }
  const uint32_t at = static_cast<uint32_t>(x & 0xFFFF) | static_cast<uint32_t>(y & 0xFFFF) << 16;
  window_->OnMouse(MWindow::kMouseMove, at);
  window_->OnMouse(MWindow::kButtonDown, at);
  window_->OnMouse(MWindow::kButtonUp, at);
  Deliver();
}

void PanelStage::Ticks(int count) {
  for (int i = 0; i < count; ++i) Post(MInstallerWindow::kTickEventId, MInstallerWindow::kProgressTick);
}

void PanelStage::TicksUntilStopped(int limit) {
  MUIPanelProgress* progress = window_->progressPanel;
  for (int i = 0; i < limit && progress && progress->running; ++i) Ticks(1);
}

void PanelStage::Settle() {
  if (window_->rect.right == window_->targetRect.right && window_->rect.bottom == window_->targetRect.bottom) return;
  window_->rect.right = window_->targetRect.right;
  window_->rect.bottom = window_->targetRect.bottom;
  window_->ApplyRect(false, true);
}

void PanelStage::PaintInto(HDC dc) {
  GdiDrawSurface surface(dc, static_cast<Win32WindowSystem&>(ui_->System()).AlphaBlendEntry());
  window_->OnPaint(MRect{0, 0, Width(), Height()}, surface);
  GdiFlush();
}

void PanelStage::PaintBackBuffer() { PaintInto(static_cast<HDC>(window_->backDC)); }

}  // namespace SASM
