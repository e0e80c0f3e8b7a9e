// The real module, loaded as a host loads it.
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "engine/InstallEngine.h"
#include "engine/LumenBrokerShim.h"
#include "engine/VendorIdentity.h"
#include "engine/win32/DynamicLoadLibraryHelper.h"
#include "engine/win32/LateBoundFunction.h"
#include "engine/win32/WideText.h"
#include "host/ReferenceHost.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using StartFn = LumenBrokerShim* (*)(HostCallbacks*);

class ModuleEntryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    module_ = LoadLibraryW(WineTest::ModulePath().c_str());
    ASSERT_NE(module_, nullptr) << "LoadLibrary error " << GetLastError();
    start_ = reinterpret_cast<StartFn>(reinterpret_cast<void*>(GetProcAddress(module_, "Start")));
    ASSERT_NE(start_, nullptr);
  }
  void TearDown() override {
    if (module_) FreeLibrary(module_);
  }

  // The module's shim for host; the host knows it until the test ends.
  std::unique_ptr<LumenBrokerShim> Start(ReferenceHost& host) {
    std::unique_ptr<LumenBrokerShim> shim(start_(&host));
    host.shim = shim.get();
    return shim;
  }

  std::set<std::string> Entries(MStringList* list) {
    std::set<std::string> names;
    for (auto* node = list->head; node; node = node->next) names.insert(node->key.ToUtf8());
    return names;
  }

  HMODULE module_ = nullptr;
  StartFn start_ = nullptr;
};

TEST_F(ModuleEntryTest, StartReturnsAShimThatOwnsAnEngineAndReadsTheModulesStrings) {
  ReferenceHost host(HostOptions{}, MString(u""));
  host.resourceModule = module_;
  std::unique_ptr<LumenBrokerShim> shim = Start(host);
  ASSERT_NE(shim, nullptr);
  EXPECT_NE(shim->GetEngine(), nullptr);
  EXPECT_EQ(shim->WasRegistrationReached(), 0);
  // Wine's ieframe.dll has no IERefreshElevationPolicy; nothing is reported for it either.
  EXPECT_FALSE(shim->RefreshElevationPolicy());
  EXPECT_EQ(host.Log().Count(), 0u);
  MString text;
  EXPECT_EQ(shim->LoadString(text, 51, 0).ToUtf8(), "No error information is available.");
  EXPECT_EQ(shim->LoadString(text, 64000, 0).ToUtf8(), "MISSING LOCALIZATION");
}

TEST_F(ModuleEntryTest, LoadEngineListsReadsSettingsAndRealDirectories) {
  std::wstring base = WineTest::SystemDirectory() + L"\\Halcyons\\Lumen";
  std::wstring product = WineTest::RoamingFolder() + L"\\Halcyonics\\Lumen Player\\" +
                         ToWide(Vendor::kSettingsDirectory) + L"\\bin";
  WineTest::TempTree tree;
  tree.File(base + L"\\LumenUtil_ActiveX.exe");
  tree.File(base + L"\\LumenCtrl_28_0_0_126.ocx");
  tree.Directory(product + L"\\lumen_28_0");

  MString settings(
      u"AddRemoveProgramsGUIDsAX \"{A}\"; AddRemoveProgramsGUIDsPlugin \"{B}\"; AddRemoveProgramsGUIDsPepper \"{C}\";"
      u"FilenamesAX LumenCtrl.ocx \"Lumen Readme.txt\"; FilenamesPlugin NPLumen.dll;"
      u"AddRemoveProgramsGUIDsPepperSelf \"{S}\";"
      u"AXFilenamePatterns LumenCtrl:.ocx; PluginFilenamePatterns NPLumen:.dll; PepperFilenamePatterns pep:.dll;"
      u"ProductManagerDirectoryPatterns lumen_;");
  ReferenceHost host(HostOptions{}, settings);
  std::unique_ptr<LumenBrokerShim> shim = Start(host);
  ASSERT_NE(shim, nullptr);

  EXPECT_TRUE(shim->LoadEngineLists()) << host.FormatLog();
  EXPECT_EQ(Entries(shim->GetAXFilenames()), (std::set<std::string>{"LumenCtrl.ocx", "Lumen Readme.txt"}));
  // The PPAPI "Self" ids land in the plug-in list.
  EXPECT_EQ(Entries(&shim->GetEngine()->guidsPlugin), (std::set<std::string>{"{B}", "{S}"}));
  // The first entry of a listing is skipped; ".." and the real files remain.
  std::set<std::string> system = Entries(&shim->GetEngine()->systemEntries);
  EXPECT_TRUE(system.count("LumenUtil_ActiveX.exe") && system.count("LumenCtrl_28_0_0_126.ocx") && system.count(".."));
  EXPECT_TRUE(Entries(shim->GetProductManagerEntries()).count("lumen_28_0"));
  EXPECT_EQ(host.Log().Count(), 0) << host.FormatLog();
}

// Libraries named bare are bound from the system directory only, never from the
// search path, where this module sits beside the program.
TEST(ModuleLibraryBinding, BareNamesNeverLoadFromBesideTheProgram) {
  ASSERT_TRUE(WineTest::FileExists(WineTest::ModulePath()));
  DynamicLoadLibraryHelper helper("LumenUtil.dll", true, false);
  EXPECT_EQ(helper.library(), nullptr);
  EXPECT_EQ(helper.available(), 0);
  LateBoundFunction function(L"LumenUtil.dll", "Start");
  EXPECT_EQ(function.Get(), nullptr);
  EXPECT_EQ(function.Module(), nullptr);
}

}  // namespace
