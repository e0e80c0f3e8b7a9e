#include <gtest/gtest.h>

#include <memory>

#include "engine/InstallEngine.h"
#include "engine/LumenBrokerShim.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

class ShimTest : public ::testing::Test {
 protected:
  LumenBrokerShim& Start(const char16_t* settings = u"", std::vector<std::u16string> switches = {}) {
    world_ = std::make_unique<TestWorld>(std::move(switches), settings);
    return *world_->shim;
  }
  Paths Files() const {
    Paths files;
    for (const auto& e : world_->system.Executions()) files.push_back(e.file);
    return files;
  }
  std::unique_ptr<TestWorld> world_;
};

TEST_F(ShimTest, StartBuildsAnEngineWithNothingReachedAndStringsFallBackToTheHost) {
  LumenBrokerShim& shim = Start();
  ASSERT_NE(shim.GetEngine(), nullptr);
  EXPECT_EQ(shim.WasRegistrationReached(), 0);
  EXPECT_TRUE(shim.browserName.IsEmpty());
  EXPECT_EQ(shim.GetEngine()->version.ToUtf8(), "28.0.0.126");

  world_->system.SetResourceString(51, u"No error information is available.");
  MString text;
  EXPECT_EQ(shim.LoadString(text, 51, 0).ToUtf8(), "No error information is available.");
  EXPECT_EQ(shim.LoadString(text, 999, 0).ToUtf8(), "MISSING LOCALIZATION");
  EXPECT_EQ(shim.LoadString(text, 999, 1).ToUtf8(), "[string 999]");
}

TEST_F(ShimTest, UacNeedsVersionSixAndAPositiveEnableLua) {
  const char16_t kKey[] = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
  LumenBrokerShim& shim = Start();
  EXPECT_FALSE(shim.IsUacEnabled()) << "an unreadable value counts as 0";
  world_->registry.SetDword(RegistryHive::Machine, kKey, u"EnableLUA", 1);
  EXPECT_TRUE(shim.IsUacEnabled());
  world_->system.SetMajorVersion(5);
  EXPECT_FALSE(shim.IsUacEnabled());
}

TEST_F(ShimTest, BadRealPlayerIsAnyVersionWhoseMajorStartsWithSix) {
  LumenBrokerShim& shim = Start();
  EXPECT_FALSE(shim.IsBadRealPlayer());
  for (auto [version, bad] :
       {std::pair{u"60", true}, {u"6.0.12", true}, {u"16.0", false}}) {
    world_->registry.SetString(RegistryHive::Machine, u"SOFTWARE\\RealNetworks\\RealPlayer", u"version", version);
    EXPECT_EQ(shim.IsBadRealPlayer(), bad) << MString(version).ToUtf8();
  }
}

TEST_F(ShimTest, OpenUrlForActiveXTriesBothExplorersThenTheUrlAloneAndStopsAtTheFirstThatWorks) {
  LumenBrokerShim& shim = Start(u"", {u"-activex"});
  world_->system.SetShellExecuteResults({2, 31, 5});
  EXPECT_FALSE(shim.OpenUrl(nullptr, MString(u"https://x.example/")));
  EXPECT_EQ(Files(), (Paths{u"c:\\Program Files\\Internet Explorer\\iexplore.exe",
                            u"c:\\Program Files (x86)\\Internet Explorer\\iexplore.exe", u"https://x.example/"}));
  EXPECT_EQ(world_->system.Executions()[0].parameters, u"https://x.example/");
  EXPECT_EQ(world_->system.Executions()[0].verb, u"open");
  EXPECT_TRUE(world_->system.Executions()[2].parameters.empty());
}

TEST_F(ShimTest, OpenUrlForThePluginUsesTheRunningBrowserOrFirefox) {
  LumenBrokerShim& shim = Start(u"", {u"-npapi"});
  shim.browserName = MString(u"C:\\Opera\\opera.exe");
  EXPECT_TRUE(shim.OpenUrl(nullptr, MString(u"u")));
  shim.browserName = MString::Empty();
  EXPECT_TRUE(shim.OpenUrl(nullptr, MString(u"u")));
  EXPECT_EQ(Files(), (Paths{u"C:\\Opera\\opera.exe", u"firefox.exe"}));
}

TEST_F(ShimTest, ExpressInstallUrlNeedsAValue) {
  EXPECT_FALSE(Start(u"ExpressInstallURL;").OpenExpressInstallUrl(nullptr));
  EXPECT_TRUE(world_->system.Executions().empty());
  EXPECT_TRUE(Start(u"ExpressInstallURL \"https://go.example/ei\" second;").OpenExpressInstallUrl(nullptr));
  EXPECT_EQ(Files(), Paths{u"https://go.example/ei"});
}

TEST_F(ShimTest, ControlPanelAppletStartsWhenReadableAndAlwaysAnswersFalse) {
  LumenBrokerShim& shim = Start();
  world_->system.SetFolder(36, u"C:\\Windows");
  EXPECT_FALSE(shim.OpenControlPanelApplet());
  EXPECT_TRUE(world_->system.StartedProcesses().empty());
  world_->files.AddFile(u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl");
  EXPECT_FALSE(shim.OpenControlPanelApplet());
  EXPECT_EQ(world_->system.StartedProcesses(), Paths{u"control.exe C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl"});
  EXPECT_EQ(world_->files.OpenHandles(), 0u);
}

// The installation operations, over a release host.
constexpr char16_t kInstallHost[] =
    u"Host { PayloadPath \"C:\\Setup\\payload.bin\"; UtilityPath \"C:\\Lumen\\LumenUtil_ActiveX.exe\"; }";

class ShimInstallTest : public WorldTest {
 protected:
  static constexpr char16_t kControl[] = u"C:\\Lumen\\LumenCtrl.ocx";
  static constexpr char16_t kServer[] = u"C:\\Lumen\\LumenUtil_ActiveX.exe";

  ShimInstallTest() : WorldTest({u"-release"}, kInstallHost) {
    world_.files.AddFile(kControl, "ocx");
    world_.files.AddFile(kServer, "exe");
  }
  LumenBrokerShim& Shim() { return *world_.shim; }
  void SetInstalled(const char16_t* kindWord, const char16_t* version) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + kindWord;
    world_.registry.SetString(RegistryHive::Machine, key, u"Version", version);
  }
  // The answer of CheckInstallAllowed and the code it leaves, starting from 77.
  std::pair<bool, int32_t> Check(uint32_t kinds, int32_t mode) {
    int32_t code = 77;
    bool allowed = Shim().CheckInstallAllowed(kinds, code, mode);
    return {allowed, code};
  }
};

TEST_F(ShimInstallTest, CheckInstallAllowedByKindReleaseTypeVersionAndSafeList) {
  // No kind is allowed and leaves the code alone.
  EXPECT_EQ(Check(0, 1), std::pair(true, 77));
  // A newer plug-in refuses with the mode's code.
  SetInstalled(u"Pepper", u"28.0.0.127");
  EXPECT_EQ(Check(32768, 1), std::pair(false, 1013));
  EXPECT_EQ(Check(8 | 32768, 2), std::pair(false, 1162));
  // ActiveX consults only the safe list: a newer control does not refuse.
  SetInstalled(u"ActiveX", u"30.0.0.0");
  EXPECT_TRUE(Check(8, 0).first);
  world_.registry.SetDword(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayer\\SafeVersions", u"28.0", 127);
  EXPECT_EQ(Check(8 | 16, 0), std::pair(false, 1162));
  // Another release type refuses before any version test.
  TestWorld other({u"-release"}, kInstallHost);
  other.registry.SetDword(RegistryHive::Machine, u"SOFTWARE\\Halcyonics\\LumenPlayerPluginReleaseType", u"Release", 0);
  other.registry.SetString(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPlugin", u"Version", u"29.0.0.1");
  int32_t code = 77;
  EXPECT_FALSE(other.shim->CheckInstallAllowed(16, code, 1));
  EXPECT_EQ(code, 1161);
}

TEST_F(ShimInstallTest, ActiveXRegistersBrokerAndControlThenWritesTheEntries) {
  world_.modules.AddModule(kControl, {{"DllRegisterServer", {0}}});
  world_.processes.Add(70, u"iexplore.exe");
  EXPECT_TRUE(Shim().RegisterProduct(8, MString(kControl), MString(kServer), MString(), 0));
  EXPECT_EQ(Shim().WasRegistrationReached(), 1);
  EXPECT_EQ(world_.String(u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}\\LocalServer32", u""),
            kServer);
  EXPECT_TRUE(world_.Attributes(kControl) & FileAttribute::kReadOnly);
  EXPECT_EQ(world_.access.Log().size(), 3u + 3u + 3u) << "server grants, control grants, the control's keys";
  EXPECT_EQ(
      world_.processes.Starts(),
      (std::vector<FakeProcesses::Start>{{70, u"\"C:\\Lumen\\LumenUtil_ActiveX.exe\" -refreshIEElevationPolicies"}}));
  EXPECT_FALSE(world_.KeyExists(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"))
      << "no entry was asked for";
  EXPECT_TRUE(world_.KeyExists(
      u"SOFTWARE\\Microsoft\\Internet Explorer\\ActiveX Compatibility\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}"));
}

TEST_F(ShimInstallTest, AControlThatWontRegisterEndsBeforeTheInventory) {
  world_.modules.AddModule(kControl, {{"DllRegisterServer", {static_cast<int32_t>(0x80004005u)}}});
  EXPECT_FALSE(Shim().RegisterProduct(8, MString(kControl), MString(kServer), MString(), 1));
  EXPECT_EQ(Shim().WasRegistrationReached(), 0);
  EXPECT_FALSE(world_.KeyExists(u"Software\\Halcyonics\\LumenPlayerActiveX"));
  EXPECT_FALSE(
      world_.KeyExists(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"));
  EXPECT_EQ(world_.Codes(), (CodeList{1032, 18, 1032}));
  EXPECT_FALSE(world_.Attributes(kControl) & FileAttribute::kReadOnly) << "only a registered control is protected";
}

TEST_F(ShimInstallTest, APluginEntryWriteFailureIsLoggedAndTheRegistrationStillSucceeds) {
  world_.registry.FailKey(RegistryHive::Machine, u"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer", 5);
  EXPECT_TRUE(Shim().RegisterProduct(16, MString(u"C:\\Lumen\\NPLumen.dll"), MString(kServer), MString(), 1));
  EXPECT_EQ(Shim().WasRegistrationReached(), 1);
  EXPECT_EQ(world_.Reports(), Strings{"1035 1 SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer/Path 5"});
  EXPECT_TRUE(world_.KeyExists(u"Software\\Halcyonics\\LumenPlayerPlugin"));
}

TEST_F(ShimInstallTest, StopPlayersSaysSoThenRepairsTheRegistryAccess) {
  EXPECT_TRUE(Shim().StopPlayers());
  EXPECT_EQ(world_.Reports(), Strings{"18 0 "});
  EXPECT_EQ(world_.access.Log().size(), 3u);
}

TEST_F(ShimInstallTest, UnregisteringFindsTheControlByItsClassRegistration) {
  const char16_t kSafe[] = u"Software\\Halcyonics\\LumenPlayer\\SafeVersions";
  world_.registry.SetDword(RegistryHive::Machine, kSafe, u"28.0", 127);
  EXPECT_FALSE(Shim().UnregisterActiveXControl(1, MString()));
  EXPECT_FALSE(world_.KeyExists(kSafe)) << "the flag deletes the safe versions whether or not the control was found";
  EXPECT_EQ(world_.Reports(),
            Strings{"1036 1 Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32/ 2"});

  world_.registry.SetString(RegistryHive::Machine,
                            u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32", u"",
                            kControl);
  world_.files.SetAttributes(kControl, FileAttribute::kReadOnly);
  world_.modules.AddModule(kControl, {{"DllUnregisterServer", {0}}});
  world_.registry.SetDword(RegistryHive::Machine, kSafe, u"28.0", 127);
  EXPECT_TRUE(Shim().UnregisterActiveXControl(0, MString()));
  EXPECT_TRUE(world_.KeyExists(kSafe));
  EXPECT_EQ(world_.Attributes(kControl), 0u);
}

}  // namespace
