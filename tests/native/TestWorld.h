#pragma once
// A shim over every fake seam, with the reference host, for the installation and removal tests.
#include <gtest/gtest.h>

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

using Paths = std::vector<std::u16string>;
using Strings = std::vector<std::string>;
using CodeList = std::vector<int32_t>;

class TestWorld {
 public:
  // Host switches as the reference host parses them; the settings text's Host block holds the host's answers.
  explicit TestWorld(std::vector<std::u16string> switches = {}, const char16_t* settings = u"") {
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
  Strings Reports() const {
    Strings lines;
    for (const auto& entry : host->Log().Entries())
      lines.push_back(std::to_string(entry.code) + " " + std::to_string(entry.severity) + " " + entry.text.ToUtf8());
    return lines;
  }
  CodeList Codes() const {
    CodeList codes;
    for (const auto& entry : host->Log().Entries()) codes.push_back(entry.code);
    return codes;
  }

  // The machine hive's keys and values; a value that can't be read answers "<absent>" or 0xDEAD.
  bool KeyExists(std::u16string_view key) const { return registry.KeyExists(RegistryHive::Machine, key); }
  std::u16string String(std::u16string_view key, std::u16string_view name) {
    std::u16string text;
    return registry.ReadString(RegistryHive::Machine, key, name, text) == 0 ? text : u"<absent>";
  }
  uint32_t Dword(std::u16string_view key, std::u16string_view name) {
    uint32_t value = 0;
    return registry.ReadDword(RegistryHive::Machine, key, name, value) == 0 ? value : 0xDEAD;
  }
  uint32_t Attributes(std::u16string_view path) {
    uint32_t attributes = 0;
    files.GetAttributes(path, attributes);
    return attributes;
  }
  // Those of the paths that exist.
  Paths Existing(std::initializer_list<std::u16string_view> paths) const {
    Paths found;
    for (std::u16string_view path : paths) {
      if (files.Exists(path)) found.emplace_back(path);
    }
    return found;
  }
  static Strings Texts(const MStringList& list) {
    Strings texts;
    for (auto* node = list.head; node; node = node->next) texts.push_back(node->key.ToUtf8());
    return texts;
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

// A test over one world; a fixture passes the host's switches and settings.
class WorldTest : public ::testing::Test {
 protected:
  explicit WorldTest(std::vector<std::u16string> switches = {}, const char16_t* settings = u"")
      : world_(std::move(switches), settings) {}
  TestWorld world_;
};

}  // namespace SASM
