#pragma once
// A plain window over the fake window system, with a reference host whose shim
// writes down the addresses and applets it is asked to open, and a record of
// the window's events. Widgets made by a test must go before the window does.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeWindowSystem.h"
#include "ui/MPlainWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

class RecordingShim : public LumenBrokerShim {
 public:
  explicit RecordingShim(HostCallbacks* host) : LumenBrokerShim(host, Platform{}) {}
  bool OpenUrl(void* window, MString url) override {
    opened.push_back(url.ToUtf8());
    windows.push_back(window);
    return true;
  }
  bool OpenControlPanelApplet() override {
    opened.push_back("<applet>");
    return false;
  }
  std::vector<std::string> opened;
  std::vector<void*> windows;
};

using WidgetEvent = std::tuple<int32_t, int32_t, intptr_t>;

class WidgetTestWindow : public ::testing::Test {
 protected:
  WidgetTestWindow()
      : host(HostOptions{}, MString(u"")), shim(&host), ui(&host, nullptr, std::make_unique<FakeWindowSystem>()) {
    host.shim = &shim;
    window = new MPlainWindow(&ui);
    ui.window = window;
    fakeHost = System().lastHost;
    window->SetListener(
        [](MPlainWindow*, int32_t id, int32_t message, intptr_t param, void* context) {
          if (message == 4 && id == 2) return;  // the tick
          static_cast<std::vector<WidgetEvent>*>(context)->push_back({id, message, param});
        },
        &events);
  }

  FakeWindowSystem& System() { return static_cast<FakeWindowSystem&>(ui.System()); }
  // Posted control notifications as (id, message).
  std::vector<std::pair<int32_t, int32_t>> Posted() {
    std::vector<std::pair<int32_t, int32_t>> out;
    for (const auto& p : System().posted)
      out.push_back({static_cast<int32_t>(p.wParam), static_cast<int32_t>(p.message - MWindow::kUserBase)});
    return out;
  }
  void Mouse(uint32_t message, int32_t x, int32_t y) {
    window->OnMouse(message, static_cast<uint32_t>(x & 0xFFFF) | (static_cast<uint32_t>(y & 0xFFFF) << 16));
  }

  ReferenceHost host;
  RecordingShim shim;
  MorphUI ui;
  MPlainWindow* window;
  FakeWindowHost* fakeHost;
  std::vector<WidgetEvent> events;
};

}  // namespace SASM
