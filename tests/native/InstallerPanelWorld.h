#pragma once
// A built installer window over fakes, for the tests of its later pages: the
// host and shim of FakeInstallerHost.h, a file system and system for the
// settings-manager test, and a record of every Notify with the product mask
// that code 6 hands back.
#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "engine/Platform.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeInstallerHost.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/fakes/FakeWindowSystem.h"
#include "ui/MButton.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"

namespace SASM {

class InstallerPanelWorld : public ::testing::Test {
 protected:
  InstallerPanelWorld() : shim(&host, Platform{nullptr, &files, &system}) {
    host.shim = &shim;
    host.strings = {{15, u"^%"}, {28, u"And ^ more"}, {88, u"https://get.lumen.example/lumenplayer/update/"}};
    auto windowSystem = std::make_unique<FakeWindowSystem>();
    windows = windowSystem.get();
    ui = std::make_unique<MorphUI>(&host, nullptr, std::move(windowSystem));
    ui->SetEventCallback(&Notified, this);
    window = new MInstallerWindow(ui.get());
    native = windows->lastHost;
    ui->SetWindow(window);
  }

  static int32_t Notified(MorphUI*, int32_t code, intptr_t value, void* context) {
    auto* world = static_cast<InstallerPanelWorld*>(context);
    if (code == 6) {
      *reinterpret_cast<uint32_t*>(value) = world->productMask;
      world->notes.push_back({6, 0});
    } else {
      world->notes.push_back({code, value});
    }
    return 0;
  }

  // Codes of Notify other than the mask query, in order.
  std::vector<int32_t> NotifiedCodes() const {
    std::vector<int32_t> codes;
    for (const auto& [code, value] : notes)
      if (code != 6) codes.push_back(code);
    return codes;
  }
  int32_t CountCalls(const char* name) const {
    int32_t n = 0;
    for (const auto& call : host.calls) n += call == name;
    return n;
  }
  size_t PostedOf(int32_t message) const {
    size_t n = 0;
    for (const auto& posted : windows->posted)
      n += posted.message == static_cast<uint32_t>(message) + MWindow::kUserBase;
    return n;
  }
  static std::string Text(const MTextArea* area) { return area ? area->text.ToUtf8() : "<null>"; }

  FakeInstallerHost host;
  FakeFileSystem files;
  FakeSystem system;
  FakeInstallerShim shim;
  FakeWindowSystem* windows = nullptr;
  FakeWindowHost* native = nullptr;
  std::unique_ptr<MorphUI> ui;
  MInstallerWindow* window = nullptr;
  uint32_t productMask = 8;
  std::vector<std::pair<int32_t, intptr_t>> notes;
};

}  // namespace SASM
