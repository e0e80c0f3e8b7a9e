#include "removal/ProductRemoval.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/InstallEngine.h"
#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kHostBlock[] =
    u"Host { ControlPanelApplet LumenPlayerCPLApp.cpl; SettingsManager LumenPlayer_Settings.exe;"
    u" UpdateService UpdateSvc.exe; FeedbackService FeedbackSvc.exe; }";
constexpr char16_t kSystem[] = u"C:\\Windows\\SysWOW64";
constexpr char16_t kControlServer[] =
    u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32";
constexpr char16_t kBrokerServer[] = u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}\\LocalServer32";

// The codes of the removal steps themselves, without the registry's read and delete
// failures or the lock test's notice, which their own classes pin.
std::vector<int32_t> StepCodes(const RemovalTestWorld& world) {
  std::vector<int32_t> codes = world.Codes();
  std::erase_if(codes, [](int32_t code) { return code == 1036 || code == 1037 || code == 20; });
  return codes;
}

class ProductRemovalTest : public ::testing::Test {
 protected:
  explicit ProductRemovalTest(std::vector<std::u16string> switches = {}) : world_(switches, kHostBlock) {
    world_.files.AddDirectory(kSystem);
    world_.files.AddDirectory(u"C:\\Lumen");
  }

  void Install(uint32_t kind, const char16_t* word, const char16_t* player, const char16_t* uninstaller) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + word;
    world_.registry.SetString(RegistryHive::Machine, key, u"PlayerPath", player);
    world_.registry.SetString(RegistryHive::Machine, key, u"UninstallerPath", uninstaller);
    world_.registry.SetDword(RegistryHive::Machine, key, u"isScriptDebugger", 1);
    world_.registry.SetDword(RegistryHive::Machine, key + u"ReleaseType", u"Release", 1);
    world_.files.AddFile(player);
    world_.files.AddFile(uninstaller);
    (void)kind;
  }
  bool Remove(uint32_t kind, uint8_t b = 0) {
    return world_.shim->RemoveProductKind(kind, MString(kSystem), 0, b);
  }
  // Whether a deletion of the machine hive's key was attempted.
  bool Deleted(const char16_t* key) const {
    for (const auto& write : world_.registry.Writes()) {
      if (write.operation == "DeleteTree" && write.hive == RegistryHive::Machine && write.path == key) return true;
    }
    return false;
  }

  RemovalTestWorld world_;
};

// RemoveProductKind.

TEST_F(ProductRemovalTest, InstalledKindLosesItsFilesKeysAndServices) {
  Install(16, u"Plugin", u"C:\\Lumen\\NPLumenPlayer.dll", u"C:\\Lumen\\LumenUtil_Plugin.exe");
  world_.files.AddFile(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.AddFile(u"C:\\Lumen\\UpdateSvc.exe");
  EXPECT_FALSE(Remove(16));  // the registry clean-up meets values that were never written
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\NPLumenPlayer.dll"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenUtil_Plugin.exe"));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPlugin"));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPluginReleaseType"));
  EXPECT_TRUE(Deleted(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player NPAPI"));
  EXPECT_EQ(world_.launcher.CommandLines(), (std::vector<std::u16string>{u"C:\\Lumen\\FeedbackSvc.exe -uninstall",
                                                                          u"C:\\Lumen\\UpdateSvc.exe -uninstall"}));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\FeedbackSvc.exe"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\UpdateSvc.exe"));
  EXPECT_EQ(StepCodes(world_), (std::vector<int32_t>{1021, 1048}));
  EXPECT_TRUE(world_.scheduler.Steps().empty());
}

TEST_F(ProductRemovalTest, UnreadablePathsAreReportedAndTheCleanUpStillRuns) {
  world_.files.AddFile(u"UpdateSvc.exe");
  world_.scheduler.AddTask(u"Corva Lumen Player PPAPI Notifier");
  EXPECT_FALSE(Remove(32768));
  EXPECT_EQ(StepCodes(world_), (std::vector<int32_t>{1018, 1019, 1020, 1021, 1048}));
  // No product key is deleted without a read, but the rest of the registry is cleaned.
  EXPECT_FALSE(Deleted(u"Software\\Halcyonics\\LumenPlayerPepper"));
  EXPECT_TRUE(Deleted(u"Software\\Halcyonics\\LumenPlayerPepperReleaseType"));
  EXPECT_TRUE(Deleted(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI"));
  // An empty player path leaves the services' names to stand alone, and they still go.
  EXPECT_EQ(world_.launcher.CommandLines(), std::vector<std::u16string>{u"UpdateSvc.exe -uninstall"});
  EXPECT_FALSE(world_.scheduler.HasTask(u"Corva Lumen Player PPAPI Notifier"));
}

TEST_F(ProductRemovalTest, ActiveXFallsBackOnTheControlAndBrokerRegistrations) {
  world_.registry.SetString(RegistryHive::Machine, kControlServer, u"", u"C:\\Lumen\\LumenCtrl.ocx");
  world_.registry.SetString(RegistryHive::Machine, kBrokerServer, u"", u"C:\\Lumen\\LumenUtil_ActiveX.exe");
  for (const char16_t* file : {u"C:\\Lumen\\LumenCtrl.ocx", u"C:\\Lumen\\LumenUtil_ActiveX.exe",
                               u"C:\\Lumen\\LumenUtil_ActiveX.dll"})
    world_.files.AddFile(file);
  Remove(8);
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenCtrl.ocx"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenUtil_ActiveX.exe"));
  // The uninstaller's library twin goes with it.
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenUtil_ActiveX.dll"));
  std::vector<int32_t> codes = StepCodes(world_);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1018), 1);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1019), 0);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1020), 0);
}

TEST_F(ProductRemovalTest, PlugInFallsBackOnItsBrowserValueAndPepperHasNoFallback) {
  world_.registry.SetString(RegistryHive::Machine, u"SOFTWARE\\MozillaPlugins", u"@halcyonics.example/LumenPlayer",
                            u"C:\\Lumen\\NPLumenPlayer.dll");
  world_.files.AddFile(u"C:\\Lumen\\NPLumenPlayer.dll");
  Remove(16);
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\NPLumenPlayer.dll"));
  std::vector<int32_t> codes = StepCodes(world_);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1019), 0);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1020), 1);
}

TEST_F(ProductRemovalTest, LockedEmptyAppletIsQueuedForRebootAndTheUserIsTold) {
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl");
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\LumenPlayer_Settings.exe");
  FileHandleId handle = 0;
  world_.files.Open(u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl", static_cast<int32_t>(FileOpenMode::Read), handle);
  Remove(32768);
  std::vector<std::string> reports = world_.Reports();
  auto at = std::find(reports.begin(), reports.end(), "1048 1 ");
  ASSERT_NE(at, reports.end());
  EXPECT_NE(std::find(at, reports.end(), "1047 2 C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl"), reports.end());
  EXPECT_EQ(world_.files.RebootDeletes(), std::vector<std::u16string>{u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl"});
  // The settings manager goes regardless of the applet.
  EXPECT_FALSE(world_.files.Exists(u"C:\\Windows\\SysWOW64\\LumenPlayer_Settings.exe"));
}

TEST_F(ProductRemovalTest, ServiceStepFailuresAreReportedOnTopOfTheirOwn) {
  Install(32768, u"Pepper", u"C:\\Lumen\\pepflashplayer.dll", u"C:\\Lumen\\LumenUtil_Pepper.exe");
  world_.files.AddFile(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.Deny(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.AddFile(u"C:\\Lumen\\UpdateSvc.exe");
  world_.launcher.SetExitCode(u"C:\\Lumen\\UpdateSvc.exe -uninstall", 1);
  EXPECT_FALSE(Remove(32768));
  std::vector<int32_t> codes = StepCodes(world_);
  EXPECT_EQ(std::vector<int32_t>(codes.end() - 3, codes.end()), (std::vector<int32_t>{1738, 1738, 1100}));
}

// UninstallProduct.

TEST_F(ProductRemovalTest, PlugInUninstallAnswersWhetherTheDeletionGaveAValueAboveZero) {
  // Kept as it always was: a key that was there and went answers false.
  world_.registry.SetString(RegistryHive::Machine, u"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer",
                            u"Path", u"x");
  EXPECT_FALSE(world_.shim->UninstallProduct(16, MString(), 0));
  EXPECT_TRUE(world_.shim->UninstallProduct(16, MString(), 0));
}

TEST_F(ProductRemovalTest, ActiveXUninstallRemovesTheBrokerAndClassKeysThenTheEntry) {
  world_.registry.SetString(RegistryHive::Machine, kBrokerServer, u"", u"C:\\Lumen\\LumenUtil_ActiveX.exe");
  world_.registry.CreateKey(RegistryHive::Machine,
                            u"Software\\Classes\\CLSID\\{1AD8C0A3-6AD0-4DB8-9A15-971353C43256}", 0);
  world_.registry.CreateKey(RegistryHive::Machine,
                            u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX", 0);
  EXPECT_TRUE(world_.shim->UninstallProduct(8, MString(), 0));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine, kBrokerServer));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine,
                                         u"Software\\Classes\\CLSID\\{1AD8C0A3-6AD0-4DB8-9A15-971353C43256}"));
  EXPECT_FALSE(world_.registry.KeyExists(
      RegistryHive::Machine, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"));

  world_.registry.FailKey(RegistryHive::Machine, u"Software\\Classes\\Interface\\{25964DD5-EC91-4CA5-B4AF-056246B304B5}",
                          5);
  world_.registry.CreateKey(RegistryHive::Machine,
                            u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX", 0);
  EXPECT_FALSE(world_.shim->UninstallProduct(8, MString(), 0));
  EXPECT_FALSE(world_.registry.KeyExists(
      RegistryHive::Machine, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX"));
}

// RemoveUpdateService.

TEST_F(ProductRemovalTest, UpdateServiceInTheSystemFolderGoesWithNotifyFirst) {
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\UpdateSvc.exe");
  EXPECT_TRUE(world_.shim->RemoveUpdateService(nullptr, MString(kSystem)));
  EXPECT_EQ(world_.launcher.CommandLines().size(), 3u);
  EXPECT_EQ(world_.launcher.CommandLines()[1], u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\UpdateSvc.exe -setNotifyAutoUpdate");

  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\UpdateSvc.exe");
  world_.files.Deny(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\UpdateSvc.exe");
  EXPECT_FALSE(world_.shim->RemoveUpdateService(nullptr, MString(kSystem)));
  EXPECT_EQ(world_.Codes().back(), 1100);
}

class ReleaseHostTest : public ProductRemovalTest {
 protected:
  ReleaseHostTest() : ProductRemovalTest({u"-release"}) {}
};

TEST_F(ReleaseHostTest, ReleaseHostLeavesTheUpdateServiceAlone) {
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\UpdateSvc.exe");
  EXPECT_TRUE(world_.shim->RemoveUpdateService(nullptr, MString(kSystem)));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

// Files by name and by pattern.

TEST_F(ProductRemovalTest, OneFileGoesByTheRuleItsNameSelects) {
  world_.files.AddFile(u"C:\\Lumen\\LumenCtrl.ocx", "", FileAttribute::kReadOnly);
  world_.files.AddFile(u"C:\\Lumen\\LumenUtil_ActiveX.exe", "", FileAttribute::kReadOnly);
  world_.files.AddFile(u"C:\\Lumen\\readme.txt");
  world_.modules.AddModule(u"C:\\Lumen\\LumenCtrl.ocx", {{"DllUnregisterServer", {0}}});
  world_.shim->RemoveOneFile(MString(u"LumenCtrl.ocx"), MString(u"C:\\Lumen\\LumenCtrl.ocx"));
  world_.shim->RemoveOneFile(MString(u"LumenUtil_ActiveX.exe"), MString(u"C:\\Lumen\\LumenUtil_ActiveX.exe"));
  world_.shim->RemoveOneFile(MString(u"readme.txt"), MString(u"C:\\Lumen\\readme.txt"));
  // The control and the broker lose their protection first, so they go without a fight.
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenCtrl.ocx"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\LumenUtil_ActiveX.exe"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\readme.txt"));
  // Only the control is asked to unregister itself.
  EXPECT_EQ(world_.modules.Log(), (std::vector<std::string>{"Load C:\\Lumen\\LumenCtrl.ocx", "Find DllUnregisterServer",
                                                            "Call DllUnregisterServer -> 0", "Free C:\\Lumen\\LumenCtrl.ocx"}));
}

TEST_F(ProductRemovalTest, NamedFilesGoFromTheDirectoryAndEveryPlugInFolder) {
  InstallEngine& engine = *world_.shim->GetEngine();
  engine.filenamesAX.Add(MString(u"LumenCtrl.ocx"));
  engine.filenamesAX.Add(MString(u"absent.dll"));
  engine.filenamesPlugin.Add(MString(u"NPLumenPlayer.dll"));
  engine.pluginDirectories.Add(MString(u"C:\\Browser\\plugins"));
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\LumenCtrl.ocx");
  world_.files.AddFile(u"C:\\Browser\\plugins\\NPLumenPlayer.dll");
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\NPLumenPlayer.dll");
  EXPECT_TRUE(world_.shim->RemoveNamedFiles(8 | 16, MString(kSystem)));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Windows\\SysWOW64\\LumenCtrl.ocx"));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Browser\\plugins\\NPLumenPlayer.dll"));
  // The refresh of the folders happens once; the listed folders already stand.
  EXPECT_TRUE(world_.files.Exists(u"C:\\Windows\\SysWOW64\\NPLumenPlayer.dll"));
}

class PatternFilesTest : public ProductRemovalTest {
 protected:
  PatternFilesTest() {
    world_.system.SetFolder(Csidl::kAppData, u"C:\\Users\\Tester\\AppData\\Roaming");
    InstallEngine& engine = *world_.shim->GetEngine();
    engine.baseDirectory = MString(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\");
    for (const char16_t* entry : {u"..", u"LumenCtrl_28_0.ocx", u"NPLumen_28.dll", u"pepflash_28.dll", u"GetLumen.exe"})
      engine.systemEntries.Add(MString(entry));
    engine.axPatterns.Add(MString(u"LumenCtrl:.ocx"));
    engine.axPatterns.Add(MString(u"GetLumen:.exe"));
    engine.pluginPatterns.Add(MString(u"NPLumen:.dll"));
    engine.pepperPatterns.Add(MString(u"pepflash:.dll"));
    engine.productManagerPatterns.Add(MString(u"pm:"));
    engine.productManagerEntries.Add(MString(u"pm_one"));
    engine.productManagerEntries.Add(MString(u"other"));
    for (const char16_t* entry : {u"LumenCtrl_28_0.ocx", u"NPLumen_28.dll", u"pepflash_28.dll", u"GetLumen.exe"})
      world_.files.AddFile(std::u16string(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\") + entry);
    world_.files.AddFile(std::u16string(kProduct) + u"\\pm_one\\sub\\state.bin");
    world_.files.AddFile(std::u16string(kProduct) + u"\\other\\keep.bin");
  }
  bool InBase(const char16_t* name) const {
    return world_.files.Exists(std::u16string(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\") + name);
  }

  static constexpr char16_t kProduct[] =
      u"C:\\Users\\Tester\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin";
};

TEST_F(PatternFilesTest, TwoOfTheThreeKindsLeaveTheProductManagerFoldersAlone) {
  EXPECT_TRUE(world_.shim->RemovePatternFiles(8 | 16, MString()));
  EXPECT_FALSE(InBase(u"LumenCtrl_28_0.ocx"));
  EXPECT_FALSE(InBase(u"GetLumen.exe"));
  EXPECT_FALSE(InBase(u"NPLumen_28.dll"));
  EXPECT_TRUE(InBase(u"pepflash_28.dll"));
  EXPECT_TRUE(world_.files.Exists(std::u16string(kProduct) + u"\\pm_one"));
  // An executable's pattern match also loses its execution options key.
  EXPECT_FALSE(world_.registry.KeyExists(
      RegistryHive::Machine, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\GetLumen.exe"));
  const auto& writes = world_.registry.Writes();
  EXPECT_TRUE(std::any_of(writes.begin(), writes.end(), [](const FakeRegistry::Write& w) {
    return w.path == u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\GetLumen.exe";
  }));
}

TEST_F(PatternFilesTest, AllThreeKindsAlsoDeleteTheMatchingProductManagerFolders) {
  EXPECT_TRUE(world_.shim->RemovePatternFiles(8 | 16 | 32768, MString()));
  EXPECT_FALSE(InBase(u"pepflash_28.dll"));
  EXPECT_FALSE(world_.files.Exists(std::u16string(kProduct) + u"\\pm_one"));
  EXPECT_TRUE(world_.files.Exists(std::u16string(kProduct) + u"\\other\\keep.bin"));
}

}  // namespace
