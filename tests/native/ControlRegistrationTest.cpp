#include <gtest/gtest.h>

#include "install/ControlRegistration.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr RegistryHive kMachine = RegistryHive::Machine;
constexpr char16_t kEntryKey[] = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ActiveX";
constexpr char16_t kProductKey[] = u"Software\\Halcyonics\\LumenPlayerActiveX";
constexpr char16_t kSettings[] = u"Host { PayloadPath \"C:\\Setup\\payload.bin\"; }";

// The value names of the log's writes, in order.
Strings WrittenNames(const FakeRegistry& registry) {
  Strings names;
  for (const auto& write : registry.Writes()) names.push_back(MString(write.name).ToUtf8());
  return names;
}

class ControlRegistrationTest : public WorldTest {
 protected:
  explicit ControlRegistrationTest(std::vector<std::u16string> switches = {}) : WorldTest(switches, kSettings) {}
  ControlRegistration Registration() { return ControlRegistration(*world_.shim, world_.GetPlatform()); }
};

TEST_F(ControlRegistrationTest, UninstallEntryWritesFourteenValuesInOrder) {
  world_.files.AddFile(u"C:\\Setup\\payload.bin", std::string(5 * 1024 + 1023, 'x'));
  EXPECT_TRUE(Registration().WriteUninstallEntry(8, MString(u"C:\\Lumen\\LumenUtil_ActiveX.exe")));

  EXPECT_EQ(WrittenNames(world_.registry),
            (Strings{"DisplayName", "Publisher", "DisplayVersion", "HelpLink", "NoModify", "NoRepair",
                     "RequiresIESysFile", "URLInfoAbout", "URLUpdateInfo", "VersionMajor", "VersionMinor",
                     "UninstallString", "DisplayIcon", "EstimatedSize"}));
  EXPECT_EQ(world_.String(kEntryKey, u"DisplayName"), u"Corva Lumen Player 28 ActiveX 64-bit");
  EXPECT_EQ(world_.Dword(kEntryKey, u"VersionMajor"), 28u);
  EXPECT_EQ(world_.String(kEntryKey, u"UninstallString"), u"C:\\Lumen\\LumenUtil_ActiveX.exe -maintain activex");
  EXPECT_EQ(world_.String(kEntryKey, u"DisplayIcon"), u"C:\\Lumen\\LumenUtil_ActiveX.exe");
  EXPECT_EQ(world_.Dword(kEntryKey, u"EstimatedSize"), 5u) << "bytes shifted right by ten";
}

TEST_F(ControlRegistrationTest, FailedWriteStopsTheEntry) {
  world_.registry.FailValue(kMachine, kEntryKey, u"Publisher", 5);
  EXPECT_FALSE(Registration().WriteUninstallEntry(8, MString(u"C:\\u.exe")));
  EXPECT_EQ(WrittenNames(world_.registry), (Strings{"DisplayName", "Publisher"}));
  const std::string entry = "1035 1 " + MString(kEntryKey).ToUtf8() + "/";
  EXPECT_EQ(world_.Reports(), (Strings{entry + "Publisher 5"}));
}

class InventoryTest : public ControlRegistrationTest {
 protected:
  InventoryTest() : ControlRegistrationTest({u"-release", u"-source", u"2"}) {
    world_.shim->AddExtraActiveXFile(MString(u"LumenUtil_ActiveX.exe"));
    world_.shim->AddExtraActiveXFile(MString(u"LumenCtrl.ocx"));
    world_.shim->AddExtraActiveXFile(MString(u"LumenHelper.exe"));
    world_.shim->AddExtraPepperFile(MString(u"LumenUtil_Pepper.exe"));
  }
};

TEST_F(InventoryTest, ActiveXWritesTheChainThenCompatibilityThenExceptionChainValues) {
  EXPECT_TRUE(Registration().WriteInventory(MString(u"C:\\c.ocx"), MString(u"C:\\u.exe"), 8));
  EXPECT_EQ(WrittenNames(world_.registry),
            (Strings{"Version", "Version", "PlayerPath", "UninstallerPath", "isScriptDebugger", "isESR", "isMSI",
                     "Release", "Compatibility Flags", "DisableExceptionChainValidation",
                     "DisableExceptionChainValidation"}));
  EXPECT_NE(world_.registry.WriteLog()[9].find("Options\\LumenUtil_ActiveX.exe ["), std::string::npos);
  EXPECT_NE(world_.registry.WriteLog()[10].find("Options\\LumenHelper.exe ["), std::string::npos);
  EXPECT_EQ(world_.Dword(kProductKey, u"isScriptDebugger"), 0u) << "a release player";
  EXPECT_EQ(world_.Dword(kProductKey, u"isMSI"), 1u) << "install source 2";
}

TEST_F(InventoryTest, FailedIsMsiSkipsReleaseAndCompatibilityButNotTheExceptionChain) {
  world_.registry.FailValue(kMachine, kProductKey, u"isMSI", 5);
  EXPECT_FALSE(Registration().WriteInventory(MString(u"C:\\c.ocx"), MString(u"C:\\u.exe"), 8));
  std::vector<std::string> log = world_.registry.WriteLog();
  ASSERT_EQ(log.size(), 9u);
  EXPECT_EQ(log[6], "SetDword HKLM\\Software\\Halcyonics\\LumenPlayerActiveX [isMSI] 5");
  EXPECT_NE(log[7].find("LumenUtil_ActiveX.exe [DisableExceptionChainValidation] 0"), std::string::npos);
  EXPECT_NE(log[8].find("LumenHelper.exe [DisableExceptionChainValidation] 0"), std::string::npos);
  EXPECT_EQ(world_.Reports(), (Strings{"1035 1 Software\\Halcyonics\\LumenPlayerActiveX/isMSI5"}));
}

TEST_F(ControlRegistrationTest, DebuggerPlayerFromAnotherSourceIsMarkedSo) {
  EXPECT_TRUE(Registration().WriteInventory(MString(u"C:\\n.dll"), MString(u"C:\\u.exe"), 16));
  const char16_t kPlugin[] = u"Software\\Halcyonics\\LumenPlayerPlugin";
  EXPECT_EQ(world_.Dword(kPlugin, u"isScriptDebugger"), 1u);
  EXPECT_EQ(world_.Dword(kPlugin, u"isMSI"), 0u);
  EXPECT_EQ(world_.Dword(u"Software\\Halcyonics\\LumenPlayerPluginReleaseType", u"Release"), 1u);
}

TEST_F(ControlRegistrationTest, PluginEntryNamesTheProductAndStopsAtAFailure) {
  const char16_t kPluginKey[] = u"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer";
  EXPECT_TRUE(Registration().WritePluginRegistry(MString(u"C:\\NPLumen.dll")));
  EXPECT_EQ(WrittenNames(world_.registry), (Strings{"Path", "ProductName", "Vendor", "Description", "Version"}));
  EXPECT_EQ(world_.String(kPluginKey, u"Path"), u"C:\\NPLumen.dll");
  EXPECT_EQ(world_.String(kPluginKey, u"ProductName"), u"Corva\u00AE Lumen\u00AE Player 28.0.0.126 Plugin");

  world_.registry.FailValue(kMachine, kPluginKey, u"Vendor", 5);
  EXPECT_FALSE(Registration().WritePluginRegistry(MString(u"C:\\NPLumen.dll")));
  EXPECT_EQ(world_.registry.WriteLog().back(),
            "SetString HKLM\\SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer [Vendor] 5");
}

TEST_F(ControlRegistrationTest, PluginPathReaderLooksForAValueNobodyHereWrites) {
  EXPECT_TRUE(Registration().WritePluginRegistry(MString(u"C:\\NPLumen.dll")));
  MString path;
  EXPECT_FALSE(Registration().ReadPluginPath(path));
  EXPECT_EQ(world_.Reports(), (Strings{"1036 1 SOFTWARE\\MozillaPlugins/@halcyonics.example/LumenPlayer 2"}));
}

}  // namespace
