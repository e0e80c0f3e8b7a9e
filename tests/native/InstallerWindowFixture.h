#pragma once
// The installer window over the fake window system, a scripted host and shim.
// Tests set the host's answers first, then Open() builds the window as the
// shim does. Events go straight to HandleEvent; what the window tells the host
// and what it posts are recorded.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/FakeInstallerHost.h"
#include "tests/fakes/FakeWindowSystem.h"
#include "ui/MButton.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/panels/MUIPanel.h"

namespace SASM {

class InstallerWindowFixture : public ::testing::Test {
 protected:
  using Note = std::pair<int32_t, intptr_t>;
  using Event = std::pair<int32_t, int32_t>;

  InstallerWindowFixture() : shim(&host), ui(&host, nullptr, std::make_unique<FakeWindowSystem>()) {
    host.shim = &shim;
    System().images[MInstallerWindow::kSkinImageId] = &skinPixels;
    System().images[MInstallerWindow::kBannerImageId] = &bannerPixels;
    ui.SetEventCallback(&InstallerWindowFixture::Record, this);
  }

  // Builds the window and hands it to MorphUI, which sends (2, 1, 0).
  MInstallerWindow& Open() {
    window = new MInstallerWindow(&ui);
    fakeHost = System().lastHost;
    ui.SetWindow(window);
    return *window;
  }
  // Opens panel n as the host does, by (3, 6, n).
  MUIPanel* OpenPanel(intptr_t n) {
    if (!window) Open();
    Send(MInstallerWindow::kCommandEventId, MInstallerWindow::kOpenPanel, n);
    return window->ActivePanel();
  }
  void Send(int32_t id, int32_t message, intptr_t param = 0) { window->HandleEvent(id, message, param); }
  void Click(int32_t controlId) { Send(controlId, MButton::kClicked, 0); }

  FakeWindowSystem& System() { return static_cast<FakeWindowSystem&>(ui.System()); }
  // Events posted through MorphUI::PostEvent, as (id, message), oldest first.
  std::vector<Event> Posted() {
    std::vector<Event> out;
    for (const auto& p : System().posted)
      out.push_back({static_cast<int32_t>(p.wParam), static_cast<int32_t>(p.message - MWindow::kUserBase)});
    return out;
  }
  // Notify calls of one code, their values in order.
  std::vector<intptr_t> Notified(int32_t code) const {
    std::vector<intptr_t> out;
    for (const auto& [c, value] : notes)
      if (c == code) out.push_back(value);
    return out;
  }
  const std::vector<int32_t>& QuitCodes() const { return fakeHost->quitCodes; }
  // Sets the host's text for a string id.
  void SetString(uint32_t id, const char16_t* text) { host.strings.push_back({id, text}); }
  static std::string LabelOf(const MButton* button) {
    return button && button->labelText ? button->labelText->text.ToUtf8() : std::string();
  }

  FakeInstallerHost host;
  FakeInstallerShim shim;
  MorphUI ui;
  MInstallerWindow* window = nullptr;  // MorphUI's
  FakeWindowHost* fakeHost = nullptr;
  std::vector<Note> notes;
  // What Notify(6) fills in for the product mask.
  uint32_t productMask = 0;
  int skinPixels = 0;
  int bannerPixels = 0;

 private:
  static int32_t Record(MorphUI*, int32_t code, intptr_t value, void* context) {
    auto* self = static_cast<InstallerWindowFixture*>(context);
    self->notes.push_back({code, value});
    if (code == 6 && value) *reinterpret_cast<uint32_t*>(value) = self->productMask;
    return 0;
  }
};

}  // namespace SASM
