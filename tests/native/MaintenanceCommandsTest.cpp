#include <gtest/gtest.h>

#include <algorithm>

#include "install/MaintenanceCommands.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kFeedback[] = u"C:\\Lumen\\FeedbackSvc.exe";
constexpr char16_t kUpdater[] = u"C:\\Lumen\\UpdateSvc.exe";

std::u16string Line(const char16_t* path, const char16_t* switchText) {
  return std::u16string(path) + u" " + switchText;
}

// A world with both services' files where asked, and the product key a registration leaves
// for the kind word given; debugger false marks a release player.
std::unique_ptr<TestWorld> World(std::vector<std::u16string> switches, const char16_t* settings,
                                 std::initializer_list<const char16_t*> files, const char16_t* word = nullptr,
                                 bool debugger = false) {
  auto world = std::make_unique<TestWorld>(std::move(switches), settings);
  world->files.AddDirectory(u"C:\\Lumen");
  for (const char16_t* file : files) world->files.AddFile(file);
  if (word) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + word;
    world->registry.SetString(RegistryHive::Machine, key, u"PlayerPath", u"C:\\Lumen\\player");
    world->registry.SetString(RegistryHive::Machine, key, u"UninstallerPath", u"C:\\Lumen\\uninstaller.exe");
    world->registry.SetDword(RegistryHive::Machine, key, u"isScriptDebugger", debugger ? 1 : 0);
  }
  return world;
}
MaintenanceCommands Commands(TestWorld& world) { return MaintenanceCommands(*world.shim, world.GetPlatform()); }
bool RemoveFeedback(TestWorld& world) {
  return Commands(world).RemoveFeedbackService(MString(kFeedback), MString(kUpdater));
}
// The reports beyond the registry's own read and delete failures.
Strings OwnReports(const TestWorld& world) {
  Strings reports = world.Reports();
  std::erase_if(reports, [](const std::string& r) { return r.rfind("1036 ", 0) == 0 || r.rfind("1037 ", 0) == 0; });
  return reports;
}

// The feedback service.

TEST(MaintenanceCommands, FeedbackServiceStaysWhileAPlayerNeedsItButOnNewerSystemsOnlyForThePlugIn) {
  auto world = World({}, u"", {kFeedback}, u"ActiveX");
  EXPECT_TRUE(RemoveFeedback(*world));
  EXPECT_TRUE(world->files.Exists(kFeedback));
  EXPECT_TRUE(world->launcher.Runs().empty());

  auto newer = World({}, u"Host { OsClass 3; }", {kFeedback}, u"ActiveX");
  EXPECT_TRUE(RemoveFeedback(*newer));
  EXPECT_FALSE(newer->files.Exists(kFeedback));
}

TEST(MaintenanceCommands, FeedbackServiceIsStoppedAskedToUninstallAndDeleted) {
  auto world = World({}, u"", {kFeedback});
  world->services.AddService(u"CorvaLumenPlayerFeedbackSvc", {ServiceState::kRunning, ServiceState::kStopped});
  // The removal form doesn't judge the exit code.
  world->launcher.SetExitCode(Line(kFeedback, u"-uninstall"), 3);
  EXPECT_TRUE(RemoveFeedback(*world));
  EXPECT_EQ(world->services.Stops().size(), 1u);
  EXPECT_EQ(world->launcher.CommandLines(), Paths{Line(kFeedback, u"-uninstall")});
  EXPECT_FALSE(world->files.Exists(kFeedback));
  EXPECT_EQ(OwnReports(*world), Strings{"35 0 "});
}

TEST(MaintenanceCommands, FeedbackFailuresAreReportedAndTheStepsGoOn) {
  auto world = World({}, u"", {kFeedback});
  world->files.Deny(kFeedback);
  world->services.AddService(u"CorvaLumenPlayerFeedbackSvc", {ServiceState::kRunning});
  world->services.FailControl(u"CorvaLumenPlayerFeedbackSvc", 1052);
  EXPECT_FALSE(RemoveFeedback(*world));
  EXPECT_EQ(world->launcher.Runs().size(), 1u);
  EXPECT_EQ(OwnReports(*world), (Strings{"1741 1 ", "1741 1 ", "1738 1  5"}));
}

TEST(MaintenanceCommands, WithoutAFeedbackServiceTheUpdateServiceTurnsAnalyticsOnOnlyWhenAllowedAndNotForMsi) {
  const struct {
    std::vector<std::u16string> switches;
    const char16_t* settings;
    Paths lines;
  } cases[] = {{{}, u"Host { AnalyticsAllowed 1; }", {Line(kUpdater, u"-enableAnalytics")}},
               {{u"-source", u"2"}, u"Host { AnalyticsAllowed 1; }", {}},
               {{}, u"", {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(MString(c.settings).ToUtf8() + (c.switches.empty() ? "" : " msi"));
    auto world = World(c.switches, c.settings, {kUpdater});
    EXPECT_TRUE(RemoveFeedback(*world));
    EXPECT_EQ(world->launcher.CommandLines(), c.lines);
  }
}

// The update service.

TEST(MaintenanceCommands, ReleasePlugInKeepsTheUpdateServiceAndReleaseActiveXOnlyWhereThisInstallerManagesIt) {
  auto plugin = World({}, u"", {kUpdater}, u"Plugin");
  EXPECT_TRUE(Commands(*plugin).RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_TRUE(plugin->files.Exists(kUpdater));
  EXPECT_TRUE(plugin->launcher.Runs().empty());

  auto activeX = World({}, u"Host { OsClass 3; }", {kUpdater}, u"ActiveX");
  EXPECT_TRUE(Commands(*activeX).RemoveUpdateServiceFile(MString(kUpdater), false));
  EXPECT_FALSE(activeX->files.Exists(kUpdater));
}

TEST(MaintenanceCommands, DebuggerPlayerLetsTheServiceUninstallTwiceWithNotify) {
  auto world = World({}, u"", {kUpdater}, u"Pepper", true);
  EXPECT_TRUE(Commands(*world).RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_EQ(
      world->launcher.CommandLines(),
      (Paths{Line(kUpdater, u"-uninstall"), Line(kUpdater, u"-setNotifyAutoUpdate"), Line(kUpdater, u"-uninstall")}));
  EXPECT_FALSE(world->files.Exists(kUpdater));
  EXPECT_EQ(world->registry.Writes().back().path,
            u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\UpdateSvc.exe");
}

}  // namespace
