#include "ui/panels/MUIPanelFailure.h"

#include "engine/HostCallbacks.h"
#include "engine/MessageLog.h"
#include "ui/LocalizedText.h"
#include "ui/MButton.h"
#include "ui/MTextArea.h"
#include "ui/panels/MInstallerWindow.h"

namespace SASM {

namespace {

constexpr uint32_t kHeaderString = 8;
constexpr uint32_t kTitleString = 29;
constexpr uint32_t kUninstallTitleString = 30;
constexpr uint32_t kNoInformationString = 51;
constexpr uint32_t kUninstallerHeaderString = 75;
constexpr uint32_t kInstallerHeaderString = 76;
constexpr uint32_t kQuitString = 17;

void SetTitle(MInstallerWindow& window, const MString& title) {
  window.title = title;
  window.ApplyTitle();
}

}  // namespace

MUIPanelFailure::MUIPanelFailure(MInstallerWindow* window) : MUIPanel(window) {
  bounds = MRect::FromSize(0, 0, 414, 345);
  headerText = new MTextArea(window, 17, false, true);
  headerText->SetText(window->String(kHeaderString));
  messageText = new MTextArea(window, 18, true, false);
  messageText->SetText(window->String(kNoInformationString));
  messageText->format = 48;
  strip = new MSkinnedSection(window->skinImage, MSourceRect{0, 15, 1, 72});
  sign = new MSkinnedSection(window->skinImage, MSourceRect{0, 110, 33, 30});
  sign->bounds = MRect::FromSize(22, 26, 33, 30);
  logo = MakeLogo(window->skinImage);
  AttachChild(strip);
  AttachChild(sign);
  AttachChild(logo);
}

MUIPanelFailure::~MUIPanelFailure() {
  DetachAndDelete(headerText);
  DetachAndDelete(messageText);
  DetachAndDelete(strip);
  DetachAndDelete(sign);
  DetachAndDelete(logo);
}

void MUIPanelFailure::Resize() {
  const int32_t w = bounds.Width(), h = bounds.Height();
  headerText->bounds = MRect::FromSize(85, 35, w - 114, 45);
  headerText->Layout();
  messageText->bounds = MRect::FromSize(85, 80, w - 114, h - 90);
  messageText->Layout();
  logo->bounds = MRect::FromSize(bounds.left + 10, 1, 47, 71);
  logo->Layout();
}

void MUIPanelFailure::ShowLastError() {
  MInstallerWindow& window = *installerWindow;
  HostCallbacks& host = window.Host();
  MessageLog* log = host.GetMessageLog();
  // With nothing logged there is no entry 0 to ask about: the panel keeps its
  // "no information" text.
  if (log && log->Count() > 0) {
    int32_t index = log->Count() - 1;
    while (index >= 0 && log->Severity(index) < kShownSeverity) --index;
    if (index < 0) index = 0;
    const int32_t code = log->Code(index);
    MString text, shown;
    log->Text(text, index);
    log->Format(shown, &host, log->Severity(index), code, text, 0);
    messageText->SetText(shown);
    if (code == 1048 || code == 1047) {
      headerText->SetText(window.String(kUninstallerHeaderString));
      headerText->Layout();
      SetTitle(window, window.String(kUninstallTitleString));
    } else if (code == 1040 || code == 1044) {
      headerText->SetText(window.String(kInstallerHeaderString));
      headerText->Layout();
    }
  }
  messageText->Layout();
  // Enabled but left hidden: this panel offers only QUIT.
  if (window.rightButton) window.SetButtonEnabled(window.rightButton, true);
}

bool MUIPanelFailure::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow& window = *installerWindow;
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kShown) {
    window.SizeFromStrings();
    SetTitle(window, LocalizedText::Fill(window.String(kTitleString), MString(LocalizedText::kProductVersion)));
    AttachChild(headerText);
    AttachChild(messageText);
    if (window.leftButton) {
      window.leftButton->SetVisible(true);
      window.SetButtonLabel(window.leftButton, window.String(kQuitString));
      window.SetButtonEnabled(window.leftButton, true);
    }
    if (window.rightButton) window.rightButton->SetVisible(false);
    window.Show(true);
    if (window.restartText) window.restartText->SetVisible(false);
    if (window.restartIcon) window.restartIcon->SetVisible(false);
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kResized) {
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kFailureEventId && message == MInstallerWindow::kShowError) {
    ShowLastError();
    return true;
  }
  if (id == MInstallerWindow::kLeftButtonId && message == MButton::kClicked) {
    window.ExitInstaller(MInstallerWindow::kExitQuit);
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kHidden) {
    headerText->Detach();
    messageText->Detach();
    return true;
  }
  return false;
}

}  // namespace SASM
