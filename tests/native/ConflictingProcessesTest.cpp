#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "install/ProductInventory.h"
#include "removal/ConflictingProcesses.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

using Endings = std::vector<FakeProcesses::Ending>;

// Every selected kind is tested, installed or not.
constexpr char16_t kEveryKind[] = u"ConflictCheckIsOptional 1; RestartRequired 1;";

class ConflictsTest : public ::testing::Test {
 protected:
  // tables is the settings text before the Host block; hostValues go inside it.
  void Start(const std::u16string& tables, const std::u16string& hostValues = kEveryKind,
             std::vector<std::u16string> switches = {}) {
    settings_ = tables + u";\nHost { ActiveXFiles LumenCtrl.ocx LumenHelper.exe; PluginFiles NPLumen.dll x.exe; " +
                u"PepperFiles pepLumen.dll y.exe; " + hostValues + u" }";
    world_ = std::make_unique<TestWorld>(switches, settings_.c_str());
  }
  void Install(uint32_t kind, const std::u16string& playerPath) {
    std::u16string key(ProductInventory::GetProductKey(kind).View());
    world_->registry.SetString(RegistryHive::Machine, key, u"PlayerPath", playerPath);
    world_->registry.SetString(RegistryHive::Machine, key, u"UninstallerPath", u"C:\\Lumen\\uninstall.exe");
  }
  ConflictingProcesses Conflicts() { return ConflictingProcesses(*world_->host, world_->GetPlatform()); }
  FakeProcesses& Processes() { return world_->processes; }
  // "key=shown" per entry in list order; "null" for no list at all.
  Strings Find(uint32_t kinds) {
    std::unique_ptr<MStringList> list(Conflicts().FindConflicts(kinds));
    if (!list) return {"null"};
    Strings entries;
    for (auto* node = list->head; node; node = node->next)
      entries.push_back(node->key.ToUtf8() + "=" + node->value.ToUtf8());
    return entries;
  }

  std::u16string settings_;
  std::unique_ptr<TestWorld> world_;
};

TEST_F(ConflictsTest, IgnoreTableBeatsEverythingAndAloneMatchesByPrefix) {
  Start(u"ConflictsToIgnore { firefox; plug; }; PluginConflicts { firefox F; plug P; chro C; chrome Chrome; }");
  Install(16, u"C:\\Lumen\\NPLumen.dll");
  Processes().AddImage(10, u"C:\\FF\\Firefox.exe", {u"C:\\Lumen\\NPLumen.dll"});
  Processes().AddImage(11, u"C:\\M\\plugin-container.exe");
  Processes().AddImage(12, u"C:\\G\\chrome.exe");
  EXPECT_EQ(Find(16), Strings{"chrome=Chrome"});
  EXPECT_EQ(Processes().ModuleScans(), std::vector<uint32_t>{}) << "an ignored process is not even scanned";
}

TEST_F(ConflictsTest, TablesGoNpapiActiveXPepperAndTheShownNameFallsBackToFriendlyThenKey) {
  Start(
      u"PluginConflicts { both \"By plug-in\"; bare; plain; }; ActiveXConflicts { both \"By control\"; }; "
      u"PepperConflicts { both \"By pepper\"; }; FriendlyProcessNames { bare \"Bare App\"; }");
  uint32_t id = 10;
  for (const char16_t* image : {u"C:\\BOTH.EXE", u"C:\\bare.exe", u"C:\\plain.bin.exe", u"C:\\plain.exe", u"D:\\both"})
    Processes().AddImage(id++, image);
  EXPECT_EQ(Find(16 | 8 | 32768), (Strings{"both=By plug-in", "bare=Bare App", "plain=plain"}))
      << "keys are lower-cased, lose only the last extension and appear once";
  EXPECT_EQ(Find(8 | 32768), Strings{"both=By control"});
  EXPECT_EQ(Find(32768), Strings{"both=By pepper"});
}

TEST_F(ConflictsTest, ModuleScanWantsTheInstalledPathExactlyAndLeavesEveryScannedProcessOpen) {
  Start(u"FriendlyProcessNames { word \"Word\"; }; ActiveXConflicts { known; }", u"ConflictCheckIsOptional 0;");
  Install(8, u"C:\\Lumen\\LumenCtrl.ocx");
  Processes().AddImage(10, u"C:\\Office\\word.exe", {u"C:\\Office\\word.exe", u"C:\\Lumen\\LumenCtrl.ocx"});
  Processes().AddImage(11, u"C:\\Tools\\viewer.exe", {u"C:\\Lumen\\LumenCtrl.ocx"});
  Processes().AddImage(12, u"C:\\Tools\\other.exe", {u"c:\\lumen\\lumenctrl.ocx", u""});
  Processes().AddImage(13, u"C:\\known.exe");
  EXPECT_EQ(Find(8), (Strings{"word=Word", "viewer=viewer", "known=known"}));
  EXPECT_EQ(Processes().ModuleScans(), (std::vector<uint32_t>{10, 11, 12}));
}

TEST_F(ConflictsTest, KindsAreSkippedByTheirInstalledFileNameOnlyWhenTheCheckIsOptional) {
  struct Case {
    std::u16string hostValues;
    const char16_t* source;
    Strings found;
  };
  const Strings plugin = {"firefox=F", "viewer=viewer"}, pepper = {"chrome=C"};
  const Strings both = {"firefox=F", "chrome=C", "viewer=viewer"};
  const std::u16string optional = u"ConflictCheckIsOptional 1;";
  for (const Case& c :
       {Case{optional, u"0", pepper}, Case{optional, u"8", both}, Case{u"ConflictCheckIsOptional 0;", u"0", plugin}}) {
    Start(u"PluginConflicts { firefox F; }; PepperConflicts { chrome C; }", c.hostValues, {u"-source", c.source});
    Processes().AddImage(10, u"C:\\FF\\firefox.exe");
    Processes().AddImage(11, u"C:\\G\\chrome.exe");
    Processes().AddImage(12, u"C:\\Tools\\viewer.exe", {u"C:\\Old\\NPLumenOld.dll"});
    Install(16, u"C:\\Old\\NPLumenOld.dll");  // another name than this run's NPLumen.dll
    // This run's pepLumen.dll but for case, and only half installed.
    world_->registry.SetString(RegistryHive::Machine, ProductInventory::GetProductKey(32768).View(), u"PlayerPath",
                               u"C:\\P\\PEPLUMEN.DLL");
    EXPECT_EQ(Find(16 | 32768), c.found) << MString(std::u16string_view(c.hostValues)).ToUtf8() << " source "
                                         << MString(c.source).ToUtf8();
  }
}

TEST_F(ConflictsTest, OnlyTheFirst256ProcessesAreSeenAndAFailedListingGivesNoList) {
  Start(u"PluginConflicts { late; early; }");
  Processes().AddImage(1, u"C:\\early.exe");
  for (uint32_t id = 2; id <= 256; ++id) Processes().AddImage(id, u"C:\\idle.exe");
  Processes().AddImage(257, u"C:\\late.exe");
  EXPECT_EQ(Find(16), Strings{"early=early"});
  EXPECT_EQ(Processes().LastTableBytes(), 1024u);
  Processes().FailList();
  EXPECT_EQ(Find(16), Strings{"null"});
  EXPECT_FALSE(Conflicts().StoreConflicts(16));
}

TEST_F(ConflictsTest, TheLastHelperIsEndedUnlessExplorerIsInTheWayOrItIsThePayload) {
  struct Case {
    const char16_t* tables;
    const char16_t* extraImage;
    const char16_t* hostValues;
    uint32_t kinds;
    Endings ended;
  };
  for (const Case& c : {Case{u"", u"C:\\idle.exe", kEveryKind, 8, {{21, 0}}},
                        Case{u"ActiveXConflicts { iexplore; }", u"C:\\IE\\iexplore.exe", kEveryKind, 8, {}},
                        Case{u"", u"C:\\idle.exe", u"PayloadPath \"c:\\lumen\\lumenhelper.EXE\";", 8, {}}}) {
    Start(c.tables, c.hostValues);
    Processes().AddImage(20, u"C:\\Old\\LumenHelper.exe");
    Processes().AddImage(21, u"C:\\Lumen\\LUMENHELPER.EXE");
    Processes().AddImage(30, c.extraImage);
    Find(c.kinds);
    EXPECT_EQ(Processes().Endings(), c.ended) << MString(c.tables).ToUtf8() << MString(c.hostValues).ToUtf8();
  }
}

TEST_F(ConflictsTest, StoredNamesAreJoinedByCommasAndAskingClearsThem) {
  Start(u"PluginConflicts { a \"App A\"; b \"B, Inc\"; }");
  EXPECT_FALSE(Conflicts().StoreConflicts(16)) << "an empty list is not stored";
  Processes().AddImage(10, u"C:\\a.exe");
  Processes().AddImage(11, u"C:\\b.exe");
  EXPECT_TRUE(Conflicts().StoreConflicts(16));
  std::u16string stored;
  world_->registry.ReadString(RegistryHive::CurrentUser, ConflictingProcesses::kStoreKey,
                              ConflictingProcesses::kStoreValue, stored);
  EXPECT_EQ(MString(std::u16string_view(stored)).ToUtf8(), "App A,B, Inc");
  EXPECT_TRUE(Conflicts().HasStoredConflicts());
  EXPECT_FALSE(Conflicts().HasStoredConflicts());
}

TEST_F(ConflictsTest, DefaultBrowserIsTheLastRunningOneByPathElseEmptyElseFirefoxWhenUnlisted) {
  Start(u"");
  Processes().AddImage(10, u"C:\\Opera\\OPERA.EXE");
  Processes().AddImage(11, u"C:\\SM\\seamonkey.exe");
  Processes().AddImage(12, u"C:\\Tools\\firefoxy.exe");
  EXPECT_TRUE(world_->shim->FindDefaultBrowser());
  EXPECT_EQ(world_->shim->browserName.ToUtf8(), "C:\\SM\\seamonkey.exe");
  Start(u"");
  EXPECT_FALSE(world_->shim->FindDefaultBrowser());
  Processes().FailList();
  EXPECT_TRUE(world_->shim->FindDefaultBrowser());
  EXPECT_EQ(world_->shim->browserName.ToUtf8(), "firefox.exe");
}

TEST_F(ConflictsTest, RefreshStartsTheUtilityOncePerExactlyNamedExplorerInItsRoom) {
  std::u16string utility = u"C:\\" + std::u16string(250, u'd') + u"\\u.exe";
  Start(u"", u"UtilityPath \"" + utility + u"\";");
  Processes().AddImage(10, u"C:\\IE\\iexplore.exe");
  Processes().AddImage(11, u"C:\\IE\\IEXPLORE.EXE");
  Processes().AddImage(12, u"C:\\IE\\ieuser.exe");
  Conflicts().RefreshIEElevationInSessions();
  std::u16string command = (u"\"" + utility + u"\" -refreshIEElevationPolicies").substr(0, 259);
  EXPECT_EQ(Processes().Starts(), (std::vector<FakeProcesses::Start>{{10, command}, {12, command}}));
}

TEST_F(ConflictsTest, BrowserWindowIsExplorerUnderEitherProgramFilesOrAnEdgeName) {
  Start(u"");
  world_->system.SetFolder(38, u"C:\\Program Files");
  world_->system.SetFolder(42, u"C:\\Program Files (x86)");
  int windows[3];
  Processes().AddImage(10, u"c:\\program files (x86)\\internet explorer\\IEXPLORE.EXE");
  Processes().AddImage(11, u"D:\\Elsewhere\\MicrosoftEdgeCP.exe");
  Processes().AddImage(12, u"D:\\Elsewhere\\iexplore.exe");
  for (uint32_t i = 0; i < 3; ++i) Processes().AddWindow(&windows[i], 10 + i);
  ConflictingProcesses conflicts = Conflicts();
  EXPECT_TRUE(conflicts.IsBrowserWindow(&windows[0]));
  EXPECT_TRUE(conflicts.IsBrowserWindow(&windows[1]));
  EXPECT_FALSE(conflicts.IsBrowserWindow(&windows[2]));
  EXPECT_FALSE(conflicts.IsBrowserWindow(nullptr));
}

}  // namespace
