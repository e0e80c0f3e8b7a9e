#include "ui/panels/MUIPanelAutoUpdate.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/MStringList.h"
#include "ui/LocaleMetrics.h"
#include "ui/MButton.h"
#include "ui/MScale9Data.h"
#include "ui/MScale9Section.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"

namespace SASM {

namespace {

constexpr uint32_t kHeaderString = 25;
constexpr uint32_t kDefaultTextString = 26;
constexpr uint32_t kTitleString = 33;
constexpr uint32_t kDownloadPageString = 88;
constexpr int32_t kWideLeftButton = 200;

// The values listed under key, in order: the n-th entry with that key; null when there are fewer.
const MString* NthValue(const MStringList& list, const char16_t* key, int32_t n) {
  const MString name(key);
  for (const MStringList::MStringNode* node = list.head; node; node = node->next) {
    if (node->key == name && n-- == 0) return &node->value;
  }
  return nullptr;
}

}  // namespace

MUIPanelAutoUpdate::MUIPanelAutoUpdate(MInstallerWindow* window) : MUIPanel(window) {
  void* skin = window->skinImage;
  backgroundData = new MScale9Data(MScale9Data::Make(33, 123, 1, 120, 1, 1, 50, 1, skin, MRegion::kOpaqueStretch));
  background = new MScale9Section(backgroundData, window);
  logo = MakeLogo(skin);
  // Laid out with the rest but never attached, so it does not draw.
  sideImage = new MSkinnedSection(skin, MSourceRect{39, 71, 42, 49});
  headerText = new MTextArea(window, 16, false, false);
  headerText->SetText(window->String(kHeaderString));
  headerText->format = 48;
  bodyText = new MTextArea(window, 16, true, false);
  bodyText->format = 48;
  bodyText->linkTextColor = 16501660;
  bodyText->linkNormalColor = 16501660;
  bodyText->linkHoverColor = 16769475;
  AttachChild(background);
  AttachChild(logo);
}

MUIPanelAutoUpdate::~MUIPanelAutoUpdate() {
  DetachAndDelete(headerText);
  DetachAndDelete(bodyText);
  DetachAndDelete(sideImage);
  DetachAndDelete(logo);
  DetachAndDelete(background);
  delete backgroundData;
  backgroundData = nullptr;
}

const char16_t* MUIPanelAutoUpdate::KindWord(uint32_t mask) {
  if (mask & 8) return u"activex";
  if (mask & 16) return u"plugin";
  if (mask & 32768) return u"ppapi";
  return u"";
}

void MUIPanelAutoUpdate::Resize() {
  const int32_t w = bounds.Width(), h = bounds.Height();
  const int32_t offset = LocaleMetrics::For(installerWindow->ThreadLocale()).autoUpdateTextOffset;
  headerText->verticalOffset = offset;
  bodyText->verticalOffset = offset;
  background->bounds = MRect::FromSize(0, 0, w, h);
  background->Layout();
  sideImage->bounds = MRect::FromSize(24, h - 74, 42, 49);
  sideImage->Layout();
  logo->bounds = MRect::FromSize(21, 1, 47, 71);
  logo->Layout();
  headerText->bounds = MRect::FromSize(110, 18, w - 130, 46);
  headerText->Layout();
  bodyText->bounds = MRect::FromEdges(110, 45, w - 20, h - 32);
  bodyText->Layout();
}

void MUIPanelAutoUpdate::Open() {
  MInstallerWindow& window = *installerWindow;
  HostCallbacks& host = window.Host();
  AttachChild(headerText);
  AttachChild(bodyText);
  window.title = window.String(kTitleString);
  window.ApplyTitle();
  if (MButton* left = window.leftButton) {
    left->bounds.right = left->bounds.left + kWideLeftButton;
    left->Layout();
    if (!host.SkipsUpdateChoice()) left->SetVisible(true);
  }
  if (window.rightButton) window.rightButton->SetVisible(true);

  int32_t width = kDefaultWidth, height = kDefaultHeight;
  MString text = MString::Empty();
  MStringList data;
  if (!host.GetUpdateDialogData(data)) {
    text = window.String(kDefaultTextString);
  } else {
    if (const MString* message = NthValue(data, u"message", 0)) text = *message;
    // An empty size value is no size: it keeps the default rather than a window 0 wide.
    const MString* w = NthValue(data, u"size", 0);
    if (w && !w->IsEmpty()) {
      width = static_cast<int32_t>(w->ParseDigits());
      const MString* h = NthValue(data, u"size", 1);
      if (h && !h->IsEmpty()) height = static_cast<int32_t>(h->ParseDigits());
    }
    if (host.GetInstallSource() == kHiddenInstallSource) {
      host.SetAutoUpdateChoice(0);
    } else if (const MString* mode = NthValue(data, u"autoUpdateMode", 0)) {
      const int32_t n = *mode == MString(u"1") ? 1 : *mode == MString(u"2") ? 2 : 0;
      host.SetAutoUpdateChoice(n);
    }
  }
  if (host.GetInstallSource() == kHiddenInstallSource) {
    window.Show(false);
    window.morph->Notify(4, 0);
    return;
  }
  window.rect = MRect::FromSize(0, 0, width, height);
  window.ApplyRect(false, true);
  bodyText->SetText(text);
  window.Show(true);
  Resize();
}

void MUIPanelAutoUpdate::AcceptUpdate() {
  MInstallerWindow& window = *installerWindow;
  if (window.Host().GetSessionMode() != kDownloadPageSessionMode) {
    window.morph->Notify(4, 0);
    return;
  }
  MString url = window.String(kDownloadPageString);
  uint32_t mask = 0;
  window.morph->Notify(6, reinterpret_cast<intptr_t>(&mask));
  url.Append(KindWord(mask));
  if (LumenBrokerShim* shim = window.Shim()) shim->OpenUrl(window.handle, url);
  window.ExitInstaller(MInstallerWindow::kExitFinished);
  // Frees this panel: nothing of it may be touched after this line.
  window.DeleteTransientPanels();
}

bool MUIPanelAutoUpdate::HandleEvent(int32_t id, int32_t message, intptr_t) {
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kShown) {
    Open();
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kResized) {
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kLeftButtonId && message == MButton::kClicked) {
    installerWindow->ExitInstaller(MInstallerWindow::kExitQuit);
    return true;
  }
  if (id == MInstallerWindow::kRightButtonId && message == MButton::kClicked) {
    AcceptUpdate();
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kHidden) {
    headerText->Detach();
    bodyText->Detach();
    return true;
  }
  return false;
}

}  // namespace SASM
