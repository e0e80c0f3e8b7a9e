#pragma once
// A shim over every fake seam, removal's included, with the reference host.
#include <memory>
#include <string>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeAccessControl.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeModuleLoader.h"
#include "tests/fakes/FakeProcessLauncher.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeServiceManager.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/fakes/FakeTaskScheduler.h"
#include "tests/fakes/FakeTerminalSessions.h"

namespace SASM {

class RemovalTestWorld {
 public:
  // Host switches as the reference host parses them; the settings text's Host block holds the host's answers.
  explicit RemovalTestWorld(std::vector<std::u16string> switches = {}, const char16_t* settings = u"") {
    HostOptions options;
    options.Parse(switches);
    host = std::make_unique<ReferenceHost>(options, MString(settings));
    shim.reset(StartShim(host.get(), GetPlatform()));
    host->shim = shim.get();
  }

  Platform GetPlatform() {
    return Platform{&registry, &files,    &system,   &modules,  &processes,
                    &access,   &services, &launcher, &sessions, &scheduler};
  }

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
  FakeServiceManager services;
  FakeProcessLauncher launcher;
  FakeTerminalSessions sessions;
  FakeTaskScheduler scheduler;
  std::unique_ptr<ReferenceHost> host;
  std::unique_ptr<LumenBrokerShim> shim;
};

}  // namespace SASM
