#include <gtest/gtest.h>

#include <algorithm>

#include "engine/InstallEngine.h"
#include "removal/ProductRemoval.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kHostBlock[] =
    u"Host { ControlPanelApplet LumenPlayerCPLApp.cpl; SettingsManager LumenPlayer_Settings.exe;"
    u" UpdateService UpdateSvc.exe; FeedbackService FeedbackSvc.exe; }";
constexpr char16_t kSystem[] = u"C:\\Windows\\SysWOW64";
constexpr char16_t kControlServer[] =
    u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}\\InprocServer32";
constexpr char16_t kBrokerServer[] = u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}\\LocalServer32";
const std::u16string kEntry = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ";
const std::u16string kBase = u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\";

// The codes of the removal steps themselves, without the registry's read and delete
// failures or the lock test's notice, which their own classes pin.
CodeList StepCodes(const TestWorld& world) {
  CodeList codes = world.Codes();
  std::erase_if(codes, [](int32_t code) { return code == 1036 || code == 1037 || code == 20; });
  return codes;
}
long Count(const CodeList& codes, int32_t code) { return std::count(codes.begin(), codes.end(), code); }

class ProductRemovalTest : public WorldTest {
 protected:
  explicit ProductRemovalTest(std::vector<std::u16string> switches = {}) : WorldTest(switches, kHostBlock) {
    world_.files.AddDirectory(kSystem);
    world_.files.AddDirectory(u"C:\\Lumen");
  }

  void Install(const char16_t* word, const char16_t* player, const char16_t* uninstaller) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + word;
    world_.registry.SetString(RegistryHive::Machine, key, u"PlayerPath", player);
    world_.registry.SetString(RegistryHive::Machine, key, u"UninstallerPath", uninstaller);
    world_.registry.SetDword(RegistryHive::Machine, key, u"isScriptDebugger", 1);
    world_.registry.SetDword(RegistryHive::Machine, key + u"ReleaseType", u"Release", 1);
    world_.files.AddFile(player);
    world_.files.AddFile(uninstaller);
  }
  bool Remove(uint32_t kind) { return world_.shim->RemoveProductKind(kind, MString(kSystem), 0, 0); }
  // Whether a deletion of the machine hive's key was attempted.
  bool Deleted(std::u16string_view key) const {
    return std::any_of(world_.registry.Writes().begin(), world_.registry.Writes().end(), [&](const auto& write) {
      return write.operation == "DeleteTree" && write.hive == RegistryHive::Machine && write.path == key;
    });
  }
};

// RemoveProductKind.

TEST_F(ProductRemovalTest, InstalledKindLosesItsFilesKeysAndServices) {
  Install(u"Plugin", u"C:\\Lumen\\NPLumenPlayer.dll", u"C:\\Lumen\\LumenUtil_Plugin.exe");
  world_.files.AddFile(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.AddFile(u"C:\\Lumen\\UpdateSvc.exe");
  EXPECT_FALSE(Remove(16));  // the registry clean-up meets values that were never written
  EXPECT_EQ(world_.Existing({u"C:\\Lumen\\NPLumenPlayer.dll", u"C:\\Lumen\\LumenUtil_Plugin.exe",
                             u"C:\\Lumen\\FeedbackSvc.exe", u"C:\\Lumen\\UpdateSvc.exe"}),
            Paths{});
  EXPECT_FALSE(world_.KeyExists(u"Software\\Halcyonics\\LumenPlayerPlugin"));
  EXPECT_TRUE(Deleted(kEntry + u"NPAPI"));
  EXPECT_EQ(world_.launcher.CommandLines(),
            (Paths{u"C:\\Lumen\\FeedbackSvc.exe -uninstall", u"C:\\Lumen\\UpdateSvc.exe -uninstall"}));
  EXPECT_EQ(StepCodes(world_), (CodeList{1021, 1048}));
}

TEST_F(ProductRemovalTest, UnreadablePathsAreReportedAndTheCleanUpStillRuns) {
  world_.files.AddFile(u"UpdateSvc.exe");
  world_.scheduler.AddTask(u"Corva Lumen Player PPAPI Notifier");
  EXPECT_FALSE(Remove(32768));
  EXPECT_EQ(StepCodes(world_), (CodeList{1018, 1019, 1020, 1021, 1048}));
  // No product key is deleted without a read, but the rest of the registry is cleaned.
  EXPECT_FALSE(Deleted(u"Software\\Halcyonics\\LumenPlayerPepper"));
  EXPECT_TRUE(Deleted(u"Software\\Halcyonics\\LumenPlayerPepperReleaseType"));
  EXPECT_TRUE(Deleted(kEntry + u"PPAPI"));
  // An empty player path leaves the services' names to stand alone, and they still go.
  EXPECT_EQ(world_.launcher.CommandLines(), Paths{u"UpdateSvc.exe -uninstall"});
  EXPECT_FALSE(world_.scheduler.HasTask(u"Corva Lumen Player PPAPI Notifier"));
}

TEST_F(ProductRemovalTest, ActiveXFallsBackOnTheControlAndBrokerRegistrations) {
  world_.registry.SetString(RegistryHive::Machine, kControlServer, u"", u"C:\\Lumen\\LumenCtrl.ocx");
  world_.registry.SetString(RegistryHive::Machine, kBrokerServer, u"", u"C:\\Lumen\\LumenUtil_ActiveX.exe");
  for (const char16_t* file :
       {u"C:\\Lumen\\LumenCtrl.ocx", u"C:\\Lumen\\LumenUtil_ActiveX.exe", u"C:\\Lumen\\LumenUtil_ActiveX.dll"})
    world_.files.AddFile(file);
  Remove(8);
  // The uninstaller's library twin goes with it.
  EXPECT_EQ(world_.Existing({u"C:\\Lumen\\LumenCtrl.ocx", u"C:\\Lumen\\LumenUtil_ActiveX.exe",
                             u"C:\\Lumen\\LumenUtil_ActiveX.dll"}),
            Paths{});
  CodeList codes = StepCodes(world_);
  EXPECT_EQ(Count(codes, 1018), 1);
  EXPECT_EQ(Count(codes, 1019), 0);
  EXPECT_EQ(Count(codes, 1020), 0);
}

TEST_F(ProductRemovalTest, ServiceStepFailuresAreReportedOnTopOfTheirOwn) {
  Install(u"Pepper", u"C:\\Lumen\\LumenPepper.dll", u"C:\\Lumen\\LumenUtil_Pepper.exe");
  world_.files.AddFile(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.Deny(u"C:\\Lumen\\FeedbackSvc.exe");
  world_.files.AddFile(u"C:\\Lumen\\UpdateSvc.exe");
  world_.launcher.SetExitCode(u"C:\\Lumen\\UpdateSvc.exe -uninstall", 1);
  EXPECT_FALSE(Remove(32768));
  CodeList codes = StepCodes(world_);
  EXPECT_EQ(CodeList(codes.end() - 3, codes.end()), (CodeList{1738, 1738, 1100}));
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
  // The first broker generation's class, one of those the clean-up takes.
  const char16_t kClass[] = u"Software\\Classes\\CLSID\\{D4304BCF-B8E9-4B35-BEA0-DC5B522670C2}";
  world_.registry.SetString(RegistryHive::Machine, kBrokerServer, u"", u"C:\\Lumen\\LumenUtil_ActiveX.exe");
  world_.registry.CreateKey(RegistryHive::Machine, kClass, 0);
  world_.registry.CreateKey(RegistryHive::Machine, kEntry + u"ActiveX", 0);
  EXPECT_TRUE(world_.shim->UninstallProduct(8, MString(), 0));
  EXPECT_FALSE(world_.KeyExists(kClass));

  world_.registry.FailKey(RegistryHive::Machine,
                          u"Software\\Classes\\Interface\\{25964DD5-EC91-4CA5-B4AF-056246B304B5}", 5);
  world_.registry.CreateKey(RegistryHive::Machine, kEntry + u"ActiveX", 0);
  EXPECT_FALSE(world_.shim->UninstallProduct(8, MString(), 0));
  EXPECT_FALSE(world_.KeyExists(kEntry + u"ActiveX"));
}

// RemoveUpdateService.

TEST_F(ProductRemovalTest, UpdateServiceInTheSystemFolderGoesWithNotifyFirst) {
  world_.files.AddFile(kBase + u"UpdateSvc.exe");
  EXPECT_TRUE(world_.shim->RemoveUpdateService(nullptr, MString(kSystem)));
  ASSERT_EQ(world_.launcher.CommandLines().size(), 3u);
  EXPECT_EQ(world_.launcher.CommandLines()[1], kBase + u"UpdateSvc.exe -setNotifyAutoUpdate");

  world_.files.AddFile(kBase + u"UpdateSvc.exe");
  world_.files.Deny(kBase + u"UpdateSvc.exe");
  EXPECT_FALSE(world_.shim->RemoveUpdateService(nullptr, MString(kSystem)));
  EXPECT_EQ(world_.Codes().back(), 1100);
}

// Files by name and by pattern.

TEST_F(ProductRemovalTest, OneFileGoesByTheRuleItsNameSelects) {
  world_.files.AddFile(u"C:\\Lumen\\LumenCtrl.ocx", "", FileAttribute::kReadOnly);
  world_.files.AddFile(u"C:\\Lumen\\LumenUtil_ActiveX.exe", "", FileAttribute::kReadOnly);
  world_.modules.AddModule(u"C:\\Lumen\\LumenCtrl.ocx", {{"DllUnregisterServer", {0}}});
  for (const char16_t* name : {u"LumenCtrl.ocx", u"LumenUtil_ActiveX.exe"})
    world_.shim->RemoveOneFile(MString(name), MString(u"C:\\Lumen\\" + std::u16string(name)));
  // The control and the broker lose their protection first, so they go without a fight.
  EXPECT_EQ(world_.Existing({u"C:\\Lumen\\LumenCtrl.ocx", u"C:\\Lumen\\LumenUtil_ActiveX.exe"}), Paths{});
  // Only the control is asked to unregister itself.
  EXPECT_EQ(world_.modules.Log(), (Strings{"Load C:\\Lumen\\LumenCtrl.ocx", "Find DllUnregisterServer",
                                           "Call DllUnregisterServer -> 0", "Free C:\\Lumen\\LumenCtrl.ocx"}));
}

TEST_F(ProductRemovalTest, NamedFilesGoFromTheDirectoryAndEveryPlugInFolder) {
  InstallEngine& engine = *world_.shim->GetEngine();
  engine.filenamesAX.Add(MString(u"LumenCtrl.ocx"));
  engine.filenamesPlugin.Add(MString(u"NPLumenPlayer.dll"));
  engine.pluginDirectories.Add(MString(u"C:\\Browser\\plugins"));
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\LumenCtrl.ocx");
  world_.files.AddFile(u"C:\\Browser\\plugins\\NPLumenPlayer.dll");
  world_.files.AddFile(u"C:\\Windows\\SysWOW64\\NPLumenPlayer.dll");
  EXPECT_TRUE(world_.shim->RemoveNamedFiles(8 | 16, MString(kSystem)));
  // The refresh of the folders happens once; the listed folders already stand.
  EXPECT_EQ(world_.Existing({u"C:\\Windows\\SysWOW64\\LumenCtrl.ocx", u"C:\\Browser\\plugins\\NPLumenPlayer.dll",
                             u"C:\\Windows\\SysWOW64\\NPLumenPlayer.dll"}),
            Paths{u"C:\\Windows\\SysWOW64\\NPLumenPlayer.dll"});
}

TEST_F(ProductRemovalTest, PatternFilesOfTwoKindsLeaveTheProductManagerFoldersAloneAndAllThreeTakeThem) {
  const std::u16string product =
      u"C:\\Users\\Tester\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin";
  const std::u16string options =
      u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\GetLumen.exe";
  world_.system.SetFolder(Csidl::kAppData, u"C:\\Users\\Tester\\AppData\\Roaming");
  InstallEngine& engine = *world_.shim->GetEngine();
  engine.baseDirectory = MString(std::u16string_view(kBase));
  for (const char16_t* entry : {u"..", u"LumenCtrl_28_0.ocx", u"NPLumen_28.dll", u"LumenPepper_28.dll", u"GetLumen.exe"}) {
    engine.systemEntries.Add(MString(entry));
    if (entry[0] != u'.') world_.files.AddFile(kBase + entry);
  }
  for (const char16_t* pattern : {u"LumenCtrl:.ocx", u"GetLumen:.exe"}) engine.axPatterns.Add(MString(pattern));
  engine.pluginPatterns.Add(MString(u"NPLumen:.dll"));
  engine.pepperPatterns.Add(MString(u"LumenPepper:.dll"));
  engine.productManagerPatterns.Add(MString(u"pm:"));
  engine.productManagerEntries.Add(MString(u"pm_one"));
  world_.files.AddFile(product + u"\\pm_one\\sub\\state.bin");

  EXPECT_TRUE(world_.shim->RemovePatternFiles(8 | 16, MString()));
  EXPECT_EQ(world_.Existing({kBase + u"LumenCtrl_28_0.ocx", kBase + u"GetLumen.exe", kBase + u"NPLumen_28.dll",
                             kBase + u"LumenPepper_28.dll", product + u"\\pm_one"}),
            (Paths{kBase + u"LumenPepper_28.dll", product + u"\\pm_one"}));
  // An executable's pattern match also loses its execution options key.
  EXPECT_TRUE(Deleted(options));

  EXPECT_TRUE(world_.shim->RemovePatternFiles(8 | 16 | 32768, MString()));
  EXPECT_EQ(world_.Existing({kBase + u"LumenPepper_28.dll", product + u"\\pm_one"}), Paths{});
}

}  // namespace
