#pragma once
// The built installer window of InstallerWindowFixture.h, with a shim over a
// fake file system and system for the settings-manager test, the host texts
// the later pages fill in, and a few readings of what the window recorded.
#include <string>
#include <vector>

#include "engine/Platform.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/native/InstallerWindowFixture.h"

namespace SASM {

class InstallerPanelWorld : public InstallerWindowFixture {
 protected:
  InstallerPanelWorld() : panelShim(&host, Platform{nullptr, &files, &system}) {
    host.shim = &panelShim;
    SetString(15, u"^%");
    SetString(28, u"And ^ more");
    SetString(88, u"https://get.lumen.example/lumenplayer/update/");
    productMask = 8;
    Open();
  }
  // The window goes first: its panels may still reach the shim on the way out.
  ~InstallerPanelWorld() override {
    ui.window = nullptr;
    delete window;
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
  size_t PostedOf(int32_t message) {
    size_t n = 0;
    for (const auto& [id, posted] : Posted()) n += posted == message;
    return n;
  }
  static std::string Text(const MTextArea* area) { return area ? area->text.ToUtf8() : "<null>"; }

  FakeFileSystem files;
  FakeSystem system;
  FakeInstallerShim panelShim;
};

}  // namespace SASM
