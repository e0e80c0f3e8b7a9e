#include <gtest/gtest.h>

#include "install/BrowserRefresh.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr RegistryHive kMachine = RegistryHive::Machine;
constexpr RegistryHive kUser = RegistryHive::CurrentUser;

class BrowserRefreshTest : public WorldTest {
 protected:
  BrowserRefreshTest()
      : WorldTest({}, u"Host { UtilityPath \"C:\\Windows\\system32\\Halcyons\\Lumen\\LumenUtil_ActiveX.exe\"; }") {}
  BrowserRefresh Refresh() { return BrowserRefresh(*world_.shim, world_.GetPlatform()); }
  Strings Directories() { return TestWorld::Texts(*world_.shim->GetPluginDirectories()); }
};

TEST_F(BrowserRefreshTest, PluginDirectoriesComeFromMozillaThenOperaThenTheFallback) {
  world_.registry.SetString(kMachine, u"Software\\Mozilla\\Firefox\\extensions", u"Plugins", u"C:\\FF\\plugins");
  world_.registry.CreateKey(kMachine, u"Software\\Mozilla\\Thunderbird\\bin", 0);
  world_.registry.SetString(kMachine, u"Software\\Mozilla\\Zeta\\extensions", u"Plugins", u"C:\\Zeta\\plugins");
  world_.registry.SetString(kUser, u"Software\\Opera Software", u"Last CommandLine", u"C:\\Opera\\opera.exe");
  world_.registry.SetString(kMachine, u"Software\\Opera Software", u"Plugin Path", u"D:\\Opera\\Plugins");
  Refresh().RefreshPluginDirectories(MString(u"C:\\Lumen\\plugins"));
  EXPECT_EQ(Directories(), (Strings{"C:\\FF\\plugins", "C:\\Zeta\\plugins", "C:\\Opera\\Program\\Plugins",
                                    "D:\\Opera\\Plugins", "C:\\Lumen\\plugins"}));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(BrowserRefreshTest, OperaValuesNamingNoPluginFolderAreLeftOut) {
  world_.registry.SetString(kUser, u"Software\\Opera Software", u"Last CommandLine", u"C:\\Opera\\launcher -x");
  world_.registry.SetString(kMachine, u"Software\\Opera Software", u"Last CommandLine", u"C:\\Other\\opera.exe");
  world_.registry.SetString(kMachine, u"Software\\Opera Software", u"Plugin Path", u"C:\\Opera\\plugins");
  Refresh().RefreshPluginDirectories(MString(u"F"));
  EXPECT_EQ(Directories(), (Strings{"F"}))
      << "the user's value is read, so the machine's isn't, and the case of \\Plugins counts";
}

TEST_F(BrowserRefreshTest, ASecondRefreshChangesNothing) {
  Refresh().RefreshPluginDirectories(MString(u"first"));
  world_.registry.SetString(kMachine, u"Software\\Mozilla\\Firefox\\extensions", u"Plugins", u"C:\\FF\\plugins");
  Refresh().RefreshPluginDirectories(MString(u"second"));
  EXPECT_EQ(Directories(), (Strings{"first"}));
}

TEST_F(BrowserRefreshTest, EveryExplorerProcessRestartsTheUtilityInItsUsersContext) {
  world_.processes.Add(100, u"IEXPLORE.EXE");
  world_.processes.Add(200, u"");  // can't be opened
  world_.processes.Add(300, u"ieuser.exe");
  world_.processes.Add(400, u"iexplore.exe.bak");
  world_.processes.Add(500, u"iexplore.exe");
  world_.processes.FailStartFor(300);
  Refresh().AskBrowsersToRefresh();
  const std::u16string command =
      u"\"C:\\Windows\\system32\\Halcyons\\Lumen\\LumenUtil_ActiveX.exe\" -refreshIEElevationPolicies";
  EXPECT_EQ(world_.processes.Starts(), (std::vector<FakeProcesses::Start>{{100, command}, {500, command}}));
  EXPECT_EQ(world_.processes.LastMaxCount(), 1024u);
  EXPECT_TRUE(world_.Reports().empty());
}

}  // namespace
