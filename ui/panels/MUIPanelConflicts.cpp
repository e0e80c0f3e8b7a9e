#include "ui/panels/MUIPanelConflicts.h"

#include <memory>

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/SystemPaths.h"
#include "install/FileReplacer.h"
#include "ui/LocalizedText.h"
#include "ui/MButton.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {

namespace {

constexpr uint32_t kHeaderString = 14;
constexpr uint32_t kMoreString = 28;
constexpr int32_t kRowWidth = 180;
constexpr int32_t kRowHeight = 28;

// Three rows down the left column, three in a right column that starts higher up.
MRect RowRect(int32_t k) {
  return k < 3 ? MRect::FromSize(85, 90 + 32 * k, kRowWidth, kRowHeight)
               : MRect::FromSize(283, 32 * k - 26, kRowWidth, kRowHeight);
}

}  // namespace

MUIPanelConflicts::offendingApp::offendingApp(MInstallerWindow* window, void* skinImage) : installerWindow(window) {
  icon = new MSkinnedSection(skinImage, MSourceRect{20, 30, 13, 13});
  icon->bounds = MRect::FromSize(2, 6, 13, 13);
  AttachChild(icon);
  nameText = new MTextArea(window, 20, false, false);
  nameText->format = MTextArea::kVerticalCentre;
}

MUIPanelConflicts::offendingApp::~offendingApp() {
  DetachAndDelete(nameText);
  DetachAndDelete(icon);
}

void MUIPanelConflicts::offendingApp::SetName(const MString& name) {
  nameText->SetText(name);
  const int32_t clientWidth = installerWindow->rect.right;  // the window's rectangle holds its width there
  const int32_t rowHeight = bounds.Height();
  nameText->bounds = MRect::FromSize(18, 2, clientWidth - bounds.left - 20, rowHeight - 4);
  icon->bounds = MRect::FromSize(2, (rowHeight - 11) >> 1, 13, 13);
  nameText->Layout();
}

MUIPanelConflicts::MUIPanelConflicts(MInstallerWindow* window) : MUIPanel(window) {
  handler = &MUIPanelConflicts::PollTimer;
  handlerContext = this;
  headerText = new MTextArea(window, 17, false, true);
  headerText->SetText(window->String(kHeaderString));
  headerText->format = 48;
  logo = MakeLogo(window->skinImage);
  // Laid out with the rest, but never attached: it does not draw.
  strip = new MSkinnedSection(window->skinImage, MSourceRect{0, 22, 1, 65});
  for (int32_t k = 0; k < kRowCount; ++k) {
    rows[k] = new offendingApp(window, window->skinImage);
    rows[k]->bounds = RowRect(k);
  }
}

MUIPanelConflicts::~MUIPanelConflicts() {
  for (offendingApp*& row : rows) DetachAndDelete(row);
  DetachAndDelete(headerText);
  DetachAndDelete(logo);
  DetachAndDelete(strip);
}

bool MUIPanelConflicts::PollTimer(MRegion*, MWindow* window, MPoint*, bool, uint32_t message, void* context) {
  if (message != MWindow::kTimer) return false;
  auto* panel = static_cast<MUIPanelConflicts*>(context);
  if (++panel->pollTicks > panel->pollPeriod) {
    panel->pollTicks = 0;
    window->morph->PostEvent(MInstallerWindow::kTickEventId, MInstallerWindow::kConflictPoll, 0);
  }
  return false;
}

uint32_t MUIPanelConflicts::QueryProductMask() {
  uint32_t mask = 0;
  installerWindow->morph->Notify(6, reinterpret_cast<intptr_t>(&mask));
  return mask;
}

bool MUIPanelConflicts::IsControlFileLocked() {
  LumenBrokerShim* shim = installerWindow->Shim();
  if (!shim) return false;
  const Platform& platform = shim->GetPlatform();
  // A shim without file or system seams can find nothing in use.
  if (!platform.files || !platform.system) return false;
  MString path;
  SystemPaths(platform).GetSystem32Path(path);
  MString name;
  installerWindow->Host().GetSettingsManagerFileName(name);
  path.Append(u"\\").Append(name);
  return FileReplacer(*shim, platform).TestFileLocked(kWriteTestFlag, path) == FileReplacer::kLockedWithContent;
}

bool MUIPanelConflicts::RefreshConflicts(uint32_t mask) {
  LumenBrokerShim* shim = installerWindow->Shim();
  // A list that cannot be made counts as no names at all.
  std::unique_ptr<MStringList> names(shim ? shim->FindConflicts(mask) : nullptr);
  int32_t placed = 0;
  int32_t more = 0;
  if (names) {
    for (const MStringList::MStringNode* node = names->head; node; node = node->next) {
      if (placed < kNamedRows) {
        rows[placed]->SetName(node->value);
        rows[placed]->SetVisible(true);
        ++placed;
      } else {
        ++more;
      }
    }
  }
  for (int32_t k = placed; k < kNamedRows; ++k) rows[k]->SetVisible(false);
  offendingApp* last = rows[kNamedRows];
  if (more == 0) {
    last->SetVisible(false);
  } else {
    last->SetName(LocalizedText::Fill(installerWindow->String(kMoreString), MString::FromNumber(more)));
    last->SetVisible(true);
  }
  return placed > 0;
}

void MUIPanelConflicts::Resize() {
  const int32_t w = bounds.Width();
  strip->bounds = MRect::FromSize(0, 0, w, 65);
  strip->Layout();
  headerText->bounds = MRect::FromSize(85, 35, w - 90, 50);
  headerText->Layout();
  logo->bounds = MRect::FromSize(bounds.left + 10, 1, 47, 71);
  logo->Layout();
}

bool MUIPanelConflicts::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow& window = *installerWindow;
  HostCallbacks& host = window.Host();
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kShown) {
    AttachChild(logo);
    AttachChild(headerText);
    for (offendingApp* row : rows) {
      AttachChild(row);
      row->AttachChild(row->nameText);
    }
    const uint32_t mask = QueryProductMask();
    if (!host.ConflictsBlockInstall() && host.ConflictCheckIsOptional() && !IsControlFileLocked()) {
      window.ShowPanel(window.progressPanel);
      return true;
    }
    anyConflict = RefreshConflicts(mask) ? 1 : 0;
    if (!anyConflict) {
      host.NotifyConflictsCleared(nullptr);
      window.ShowPanel(window.progressPanel);
      return true;
    }
    // The window's rectangles hold their width and height in right and bottom.
    window.targetRect = MRect{0, 0, window.targetRect.right, MInstallerWindow::kWindowHeight};
    if (window.rightButton) window.rightButton->SetVisible(false);
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kResized) {
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kTickEventId && message == MInstallerWindow::kConflictPoll) {
    const uint32_t mask = QueryProductMask();
    bool count = false;
    if (host.ConflictsBlockInstall() || !host.ConflictCheckIsOptional() || IsControlFileLocked())
      count = RefreshConflicts(mask);
    if (anyConflict && !count) {
      if (window.rightButton) window.rightButton->SetVisible(true);
      host.NotifyConflictsCleared(nullptr);
      window.ShowPanel(window.progressPanel);
    }
    anyConflict = count ? 1 : 0;
    Invalidate();
    return true;
  }
  if (id == MInstallerWindow::kLeftButtonId && message == MButton::kClicked) {
    window.ExitInstaller(MInstallerWindow::kExitQuit);
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kHidden) {
    for (offendingApp* row : rows) {
      row->nameText->Detach();
      row->Detach();
    }
    headerText->Detach();
    return true;
  }
  return false;
}

}  // namespace SASM
