#pragma once
// A shim over every fake seam, with the reference host, for the installation tests.
#include <memory>
#include <string>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeAccessControl.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeModuleLoader.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

namespace SASM {

class InstallTestWorld {
 public:
  // Host switches as the reference host parses them; settings text with its Host block.
  explicit InstallTestWorld(std::vector<std::u16string> switches = {}, const char16_t* settings = u"") {
    HostOptions options;
    options.Parse(switches);
    host = std::make_unique<ReferenceHost>(options, MString(settings));
    shim.reset(StartShim(host.get(), Platform{&registry, &files, &system, &modules, &processes, &access}));
    host->shim = shim.get();
  }

  Platform GetPlatform() { return shim->GetPlatform(); }

  // "code severity text" per report, in order.
  std::vector<std::string> Reports() const {
    std::vector<std::string> lines;
    for (const auto& entry : host->Log().Entries())
      lines.push_back(std::to_string(entry.code) + " " + std::to_string(entry.severity) + " " + entry.text.ToUtf8());
    return lines;
  }
  std::vector<int32_t> Codes() const {
    std::vector<int32_t> codes;
    for (const auto& entry : host->Log().Entries()) codes.push_back(entry.code);
    return codes;
  }

  FakeRegistry registry;
  FakeFileSystem files;
  FakeSystem system;
  FakeModuleLoader modules;
  FakeProcesses processes;
  FakeAccessControl access;
  std::unique_ptr<ReferenceHost> host;
  std::unique_ptr<LumenBrokerShim> shim;
};

}  // namespace SASM
