#include "engine/LumenBrokerShim.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>

#include "engine/InstallEngine.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/native/InstallTestWorld.h"

using namespace SASM;

namespace {

// Answers ShellExecute from a queue, so the retries can be told apart.
class ScriptedSystem : public FakeSystem {
 public:
  std::deque<intptr_t> results;
  intptr_t ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                        std::u16string_view parameters) override {
    FakeSystem::ShellExecute(window, verb, file, parameters);
    if (results.empty()) return 42;
    intptr_t next = results.front();
    results.pop_front();
    return next;
  }
};

class ShimTest : public ::testing::Test {
 protected:
  void Start(const char16_t* settings = u"", std::vector<std::u16string> switches = {}) {
    HostOptions options;
    ASSERT_TRUE(options.Parse(switches));
    host_ = std::make_unique<ReferenceHost>(options, MString(settings));
    shim_.reset(StartShim(host_.get(), Platform{&registry_, &files_, &system_}));
    ASSERT_NE(shim_, nullptr);
    host_->shim = shim_.get();
  }

  std::vector<std::u16string> Files() const {
    std::vector<std::u16string> files;
    for (const auto& e : system_.Executions()) files.push_back(e.file);
    return files;
  }

  FakeRegistry registry_;
  FakeFileSystem files_;
  ScriptedSystem system_;
  std::unique_ptr<ReferenceHost> host_;
  std::unique_ptr<LumenBrokerShim> shim_;
};

TEST_F(ShimTest, StartBuildsAnEngineWithNothingReached) {
  Start();
  EXPECT_NE(shim_->GetEngine(), nullptr);
  EXPECT_EQ(shim_->WasRegistrationReached(), 0);
  EXPECT_TRUE(shim_->browserName.IsEmpty());
  EXPECT_EQ(shim_->GetEngine()->version.ToUtf8(), "28.0.0.126");
  EXPECT_EQ(host_->Log().Count(), 0);
}

TEST_F(ShimTest, LoadStringFallsBackToTheHostOrSaysItIsMissing) {
  system_.SetResourceString(51, u"No error information is available.");
  Start();
  MString text;
  EXPECT_EQ(shim_->LoadString(text, 51, 0).ToUtf8(), "No error information is available.");
  EXPECT_EQ(shim_->LoadString(text, 999, 0).ToUtf8(), "MISSING LOCALIZATION");
  EXPECT_EQ(shim_->LoadString(text, 999, 1).ToUtf8(), "[string 999]");
}

TEST_F(ShimTest, OperationsNotYetBuiltSayItAndNeverSucceed) {
  Start();
  EXPECT_FALSE(shim_->MarkUpdateRejected());
  EXPECT_NE(shim_->RunBroker(), 0);
  ASSERT_EQ(host_->Log().Count(), 2);
  for (const auto& entry : host_->Log().Entries()) {
    EXPECT_EQ(entry.severity, 2);
    EXPECT_EQ(entry.code, 1999);
  }
  EXPECT_EQ(host_->Log().Entries()[0].text.ToUtf8(), "MarkUpdateRejected: not available in this build");
}

TEST_F(ShimTest, UacNeedsVersionSixAndAPositiveEnableLua) {
  const char16_t kKey[] = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
  Start();
  EXPECT_FALSE(shim_->IsUacEnabled()) << "an unreadable value counts as 0";
  registry_.SetDword(RegistryHive::Machine, kKey, u"EnableLUA", 1);
  EXPECT_TRUE(shim_->IsUacEnabled());
  system_.SetMajorVersion(5);
  EXPECT_FALSE(shim_->IsUacEnabled());
  system_.SetMajorVersion(6);
  registry_.SetDword(RegistryHive::Machine, kKey, u"EnableLUA", 0);
  EXPECT_FALSE(shim_->IsUacEnabled());
  EXPECT_EQ(host_->Log().Count(), 0);
}

TEST_F(ShimTest, BadRealPlayerIsAnyVersionWhoseMajorStartsWithSix) {
  const char16_t kKey[] = u"SOFTWARE\\RealNetworks\\RealPlayer";
  Start();
  EXPECT_FALSE(shim_->IsBadRealPlayer());
  struct Case {
    const char16_t* version;
    bool bad;
  };
  for (Case c : {Case{u"6", true}, Case{u"60", true}, Case{u"6.0.12", true}, Case{u"16.0", false},
                 Case{u"", false}, Case{u".6", false}}) {
    registry_.SetString(RegistryHive::Machine, kKey, u"version", c.version);
    EXPECT_EQ(shim_->IsBadRealPlayer(), c.bad) << MString(c.version).ToUtf8();
  }
}

TEST_F(ShimTest, OpenUrlForActiveXTriesBothExplorersThenTheUrlAlone) {
  Start(u"", {u"-activex"});
  system_.results = {2, 31, 5};
  EXPECT_FALSE(shim_->OpenUrl(nullptr, MString(u"https://x.example/")));
  ASSERT_EQ(system_.Executions().size(), 3u);
  EXPECT_EQ(Files(), (std::vector<std::u16string>{u"c:\\Program Files\\Internet Explorer\\iexplore.exe",
                                                   u"c:\\Program Files (x86)\\Internet Explorer\\iexplore.exe",
                                                   u"https://x.example/"}));
  EXPECT_EQ(system_.Executions()[0].parameters, u"https://x.example/");
  EXPECT_EQ(system_.Executions()[0].verb, u"open");
  EXPECT_TRUE(system_.Executions()[2].parameters.empty());
}

TEST_F(ShimTest, OpenUrlSucceedsOnTheFirstCallThatWorks) {
  Start(u"", {u"-activex"});
  system_.results = {33};
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  EXPECT_EQ(system_.Executions().size(), 1u);
}

TEST_F(ShimTest, OpenUrlForThePluginUsesTheRunningBrowserOrFirefox) {
  Start(u"", {u"-npapi"});
  shim_->browserName = MString(u"C:\\Opera\\opera.exe");
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  shim_->browserName = MString::Empty();
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  EXPECT_EQ(Files(), (std::vector<std::u16string>{u"C:\\Opera\\opera.exe", u"firefox.exe"}));
}

TEST_F(ShimTest, OpenUrlWithNoKindOpensTheUrlItself) {
  Start();
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"https://x.example/")));
  ASSERT_EQ(system_.Executions().size(), 1u);
  EXPECT_EQ(system_.Executions()[0].file, u"https://x.example/");
  EXPECT_TRUE(system_.Executions()[0].parameters.empty());
}

TEST_F(ShimTest, ExpressInstallUrlNeedsAValue) {
  Start(u"ExpressInstallURL;");
  EXPECT_FALSE(shim_->OpenExpressInstallUrl(nullptr));
  Start(u"Other x;");
  EXPECT_FALSE(shim_->OpenExpressInstallUrl(nullptr));
  EXPECT_TRUE(system_.Executions().empty());
  Start(u"ExpressInstallURL \"https://go.example/ei\" second;");
  EXPECT_TRUE(shim_->OpenExpressInstallUrl(nullptr));
  ASSERT_EQ(system_.Executions().size(), 1u);
  EXPECT_EQ(system_.Executions()[0].file, u"https://go.example/ei");
}

TEST_F(ShimTest, ControlPanelAppletStartsWhenReadableAndAlwaysAnswersFalse) {
  system_.SetFolder(36, u"C:\\Windows");
  Start();
  EXPECT_FALSE(shim_->OpenControlPanelApplet());
  EXPECT_TRUE(system_.StartedProcesses().empty());
  files_.AddFile(u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl");
  EXPECT_FALSE(shim_->OpenControlPanelApplet());
  EXPECT_EQ(system_.StartedProcesses(),
            (std::vector<std::u16string>{u"control.exe C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl"}));
  EXPECT_EQ(files_.OpenHandles(), 0u);
}

TEST_F(ShimTest, ExtraFilesAreKeptPerKind) {
  Start();
  EXPECT_TRUE(shim_->AddExtraActiveXFile(MString(u"a.exe")));
  EXPECT_TRUE(shim_->AddExtraPepperFile(MString(u"p.dll")));
  EXPECT_EQ(shim_->GetExtraActiveXFiles()->Count(), 1);
  EXPECT_EQ(shim_->GetExtraPluginFiles()->Count(), 0);
  EXPECT_TRUE(shim_->GetExtraPepperFiles()->Contains(MString(u"p.dll")));
}

// The installation operations, over every fake seam.
class ShimInstallTest : public ::testing::Test {
 protected:
  static constexpr char16_t kSettings[] =
      u"Host { PayloadPath \"C:\\Setup\\payload.bin\"; UtilityPath \"C:\\Lumen\\LumenUtil_ActiveX.exe\"; }";
  static constexpr char16_t kControl[] = u"C:\\Lumen\\LumenCtrl.ocx";
  static constexpr char16_t kServer[] = u"C:\\Lumen\\LumenUtil_ActiveX.exe";

  explicit ShimInstallTest(std::vector<std::u16string> switches = {u"-release"}) : world_(switches, kSettings) {
    world_.files.AddFile(kControl, "ocx");
    world_.files.AddFile(kServer, "exe");
  }
  LumenBrokerShim& Shim() { return *world_.shim; }
  bool KeyExists(std::u16string_view key) { return world_.registry.KeyExists(RegistryHive::Machine, key); }
  void SetRelease(const char16_t* kindWord, uint32_t value) {
    std::u16string key = std::u16string(u"SOFTWARE\\Halcyonics\\LumenPlayer") + kindWord + u"ReleaseType";
    world_.registry.SetDword(RegistryHive::Machine, key, u"Release", value);
  }
  void SetInstalled(const char16_t* kindWord, const char16_t* version) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + kindWord;
    world_.registry.SetString(RegistryHive::Machine, key, u"Version", version);
  }

  InstallTestWorld world_;
};

TEST_F(ShimInstallTest, InstallWithNoKindIsAllowedAndLeavesTheCodeAlone) {
  int32_t code = 77;
  EXPECT_TRUE(Shim().CheckInstallAllowed(0, code, 1));
  EXPECT_EQ(code, 77);
}

TEST_F(ShimInstallTest, AnotherReleaseTypeRefusesBeforeAnyVersionTest) {
  SetRelease(u"Plugin", 0);
  SetInstalled(u"Plugin", u"29.0.0.1");
  int32_t code = 77;
  EXPECT_FALSE(Shim().CheckInstallAllowed(16, code, 1));
  EXPECT_EQ(code, 1161);
  EXPECT_TRUE(Shim().ReleaseTypeMatches(16, 0));
}

TEST_F(ShimInstallTest, ANewerPlugInRefusesWithTheModesCode) {
  SetInstalled(u"Pepper", u"28.0.0.127");
  int32_t code = 0;
  EXPECT_FALSE(Shim().CheckInstallAllowed(32768, code, 1));
  EXPECT_EQ(code, 1013);
  EXPECT_FALSE(Shim().CheckInstallAllowed(8 | 32768, code, 2));
  EXPECT_EQ(code, 1162);
  SetInstalled(u"Pepper", u"28.0.0.126");
  code = 0;
  EXPECT_TRUE(Shim().CheckInstallAllowed(32768, code, 2));
  EXPECT_EQ(code, 0);
  EXPECT_EQ(Shim().GetInstalledVersionState(32768), 2);
}

TEST_F(ShimInstallTest, ActiveXConsultsOnlyTheSafeList) {
  SetInstalled(u"ActiveX", u"30.0.0.0");
  int32_t code = 0;
  EXPECT_TRUE(Shim().CheckInstallAllowed(8, code, 0)) << "a newer control does not refuse";
  world_.registry.SetDword(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayer\\SafeVersions", u"28.0", 127);
  EXPECT_FALSE(Shim().CheckInstallAllowed(8 | 16, code, 0));
  EXPECT_EQ(code, 1162);
}

TEST_F(ShimInstallTest, PepperRegistersTheInventoryWithNoControlOrPluginStep) {
  EXPECT_TRUE(Shim().RegisterProduct(32768, MString(u"C:\\Lumen\\pepflash.dll"), MString(kServer), MString(), 1));
  EXPECT_EQ(Shim().WasRegistrationReached(), 1);
  EXPECT_TRUE(world_.modules.Log().empty());
  EXPECT_TRUE(world_.access.Log().empty());
  EXPECT_FALSE(KeyExists(u"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer"));
  EXPECT_FALSE(KeyExists(u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}"));
  EXPECT_TRUE(KeyExists(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI"));
  std::u16string player;
  EXPECT_EQ(world_.registry.ReadString(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPepper", u"PlayerPath",
                                       player),
            0);
  EXPECT_EQ(player, u"C:\\Lumen\\pepflash.dll");
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ShimInstallTest, ActiveXRegistersBrokerAndControlThenWritesTheEntries) {
  world_.modules.AddModule(kControl, {{"DllRegisterServer", {0}}});
  world_.processes.Add(70, u"iexplore.exe");
  EXPECT_TRUE(Shim().RegisterProduct(8, MString(kControl), MString(kServer), MString(), 0));
  EXPECT_EQ(Shim().WasRegistrationReached(), 1);
  std::u16string server;
  EXPECT_EQ(world_.registry.ReadString(RegistryHive::Machine,
                                       u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}\\LocalServer32",
                                       u"", server),
            0);
  EXPECT_EQ(server, kServer);
  uint32_t attributes = 0;
  world_.files.GetAttributes(kControl, attributes);
  EXPECT_TRUE(attributes & FileAttribute::kReadOnly);
  world_.files.GetAttributes(kServer, attributes);
  EXPECT_TRUE(attributes & FileAttribute::kReadOnly);
  EXPECT_EQ(world_.access.Log().size(), 3u + 3u + 3u) << "server grants, control grants, the control's keys";
  ASSERT_EQ(world_.processes.Starts().size(), 1u);
  EXPECT_EQ(world_.processes.Starts()[0].commandLine, u"\"C:\\Lumen\\LumenUtil_ActiveX.exe\" -refreshIEElevationPolicies");
  EXPECT_FALSE(KeyExists(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"))
      << "no entry was asked for";
  EXPECT_TRUE(KeyExists(
      u"SOFTWARE\\Microsoft\\Internet Explorer\\ActiveX Compatibility\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}"));
}

TEST_F(ShimInstallTest, AControlThatWontRegisterEndsBeforeTheInventory) {
  world_.modules.AddModule(kControl, {{"DllRegisterServer", {static_cast<int32_t>(0x80004005u)}}});
  EXPECT_FALSE(Shim().RegisterProduct(8, MString(kControl), MString(kServer), MString(), 1));
  EXPECT_EQ(Shim().WasRegistrationReached(), 0);
  EXPECT_FALSE(KeyExists(u"Software\\Halcyonics\\LumenPlayerActiveX"));
  EXPECT_FALSE(KeyExists(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"));
  EXPECT_EQ(world_.Codes(), (std::vector<int32_t>{1032, 18, 1032}));
  uint32_t attributes = 0;
  world_.files.GetAttributes(kControl, attributes);
  EXPECT_FALSE(attributes & FileAttribute::kReadOnly) << "only a registered control is protected";
}

TEST_F(ShimInstallTest, PluginEntryFailuresDoNotStopTheRegistration) {
  world_.registry.FailKey(RegistryHive::Machine, u"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer", 5);
  EXPECT_TRUE(Shim().RegisterProduct(16, MString(u"C:\\Lumen\\NPLumen.dll"), MString(kServer), MString(), 1));
  EXPECT_EQ(Shim().WasRegistrationReached(), 1);
  EXPECT_EQ(world_.Reports(),
            (std::vector<std::string>{"1035 1 SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer/Path 5"}));
  EXPECT_TRUE(KeyExists(u"Software\\Halcyonics\\LumenPlayerPlugin"));
}

TEST_F(ShimInstallTest, InventoryWriteFailuresAreLoggedAndTheRegistrationStillSucceeds) {
  world_.registry.FailKey(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPepper", 5);
  world_.registry.FailValue(RegistryHive::Machine,
                            u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI",
                            u"EstimatedSize", 1021);
  EXPECT_TRUE(Shim().RegisterProduct(32768, MString(u"C:\\p.dll"), MString(kServer), MString(), 1));
  EXPECT_EQ(world_.Reports(),
            (std::vector<std::string>{
                "1035 1 SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI/EstimatedSize3FD",
                "1035 1 Software\\Halcyonics\\LumenPlayerPepper/Version 5",
            }));
}

TEST_F(ShimInstallTest, StopPlayersSaysSoThenRepairsTheRegistryAccess) {
  EXPECT_TRUE(Shim().StopPlayers());
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"18 0 "}));
  EXPECT_EQ(world_.access.Log().size(), 3u);
}

TEST_F(ShimInstallTest, UnregisteringFindsTheControlByItsClassRegistration) {
  const char16_t kSafe[] = u"Software\\Halcyonics\\LumenPlayer\\SafeVersions";
  world_.registry.SetDword(RegistryHive::Machine, kSafe, u"28.0", 127);
  EXPECT_FALSE(Shim().UnregisterActiveXControl(1, MString()));
  EXPECT_FALSE(KeyExists(kSafe)) << "the flag deletes the safe versions whether or not the control was found";
  EXPECT_EQ(world_.Reports(),
            (std::vector<std::string>{
                "1036 1 Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32/ 2"}));

  world_.registry.SetString(RegistryHive::Machine,
                            u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32", u"",
                            kControl);
  world_.files.SetAttributes(kControl, FileAttribute::kReadOnly);
  world_.modules.AddModule(kControl, {{"DllUnregisterServer", {0}}});
  world_.registry.SetDword(RegistryHive::Machine, kSafe, u"28.0", 127);
  EXPECT_TRUE(Shim().UnregisterActiveXControl(0, MString()));
  EXPECT_TRUE(KeyExists(kSafe));
  uint32_t attributes = 0;
  world_.files.GetAttributes(kControl, attributes);
  EXPECT_EQ(attributes, 0u);
  EXPECT_EQ(world_.modules.Log()[2], "Call DllUnregisterServer -> 0");
  EXPECT_EQ(world_.access.Log()[0].rfind("Remove ", 0), 0u);
}

}  // namespace
