#include "install/MaintenanceCommands.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kFeedback[] = u"C:\\Lumen\\FeedbackSvc.exe";
constexpr char16_t kUpdater[] = u"C:\\Lumen\\UpdateSvc.exe";

std::u16string Line(const char16_t* path, const char16_t* switchText) { return std::u16string(path) + u" " + switchText; }

class MaintenanceCommandsTest : public ::testing::Test {
 protected:
  explicit MaintenanceCommandsTest(std::vector<std::u16string> switches = {}, const char16_t* settings = u"")
      : world_(switches, settings) {
    world_.files.AddDirectory(u"C:\\Lumen");
  }

  // The product key a registration leaves; debugger false marks a release player.
  void Install(const char16_t* word, bool debugger) {
    std::u16string key = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + word;
    world_.registry.SetString(RegistryHive::Machine, key, u"PlayerPath", u"C:\\Lumen\\player");
    world_.registry.SetString(RegistryHive::Machine, key, u"UninstallerPath", u"C:\\Lumen\\uninstaller.exe");
    world_.registry.SetDword(RegistryHive::Machine, key, u"isScriptDebugger", debugger ? 1 : 0);
  }
  MaintenanceCommands Commands() { return MaintenanceCommands(*world_.shim, world_.GetPlatform()); }
  // The reports beyond the registry's own read and delete failures.
  std::vector<std::string> OwnReports() const {
    std::vector<std::string> reports = world_.Reports();
    std::erase_if(reports, [](const std::string& r) { return r.rfind("1036 ", 0) == 0 || r.rfind("1037 ", 0) == 0; });
    return reports;
  }

  RemovalTestWorld world_;
};

class AnalyticsAllowedTest : public MaintenanceCommandsTest {
 protected:
  AnalyticsAllowedTest() : MaintenanceCommandsTest({}, u"Host { AnalyticsAllowed 1; }") {}
};

class MsiAnalyticsAllowedTest : public MaintenanceCommandsTest {
 protected:
  MsiAnalyticsAllowedTest() : MaintenanceCommandsTest({u"-source", u"2"}, u"Host { AnalyticsAllowed 1; }") {}
};

class NewerOsClassTest : public MaintenanceCommandsTest {
 protected:
  NewerOsClassTest() : MaintenanceCommandsTest({}, u"Host { OsClass 3; }") {}
};

// The feedback service.

TEST_F(MaintenanceCommandsTest, FeedbackServiceStaysWhileAPlayerNeedsIt) {
  world_.files.AddFile(kFeedback);
  Install(u"ActiveX", false);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_TRUE(world_.files.Exists(kFeedback));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

TEST_F(NewerOsClassTest, OnNewerSystemsOnlyThePlugInKeepsTheFeedbackService) {
  world_.files.AddFile(kFeedback);
  Install(u"ActiveX", false);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_FALSE(world_.files.Exists(kFeedback));
}

TEST_F(MaintenanceCommandsTest, FeedbackServiceIsStoppedAskedToUninstallAndDeleted) {
  world_.files.AddFile(kFeedback);
  world_.services.AddService(u"CorvaLumenPlayerFeedbackSvc", {ServiceState::kRunning, ServiceState::kStopped});
  // The removal form doesn't judge the exit code.
  world_.launcher.SetExitCode(Line(kFeedback, u"-uninstall"), 3);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_EQ(world_.services.Stops().size(), 1u);
  EXPECT_EQ(world_.launcher.CommandLines(), std::vector<std::u16string>{Line(kFeedback, u"-uninstall")});
  EXPECT_FALSE(world_.files.Exists(kFeedback));
  EXPECT_EQ(OwnReports(), std::vector<std::string>{"35 0 "});
}

TEST_F(MaintenanceCommandsTest, FeedbackFailuresAreReportedAndTheStepsGoOn) {
  world_.files.AddFile(kFeedback);
  world_.files.Deny(kFeedback);
  world_.services.AddService(u"CorvaLumenPlayerFeedbackSvc", {ServiceState::kRunning});
  world_.services.FailControl(u"CorvaLumenPlayerFeedbackSvc", 1052);
  EXPECT_FALSE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_EQ(world_.launcher.Runs().size(), 1u);
  EXPECT_EQ(OwnReports(), (std::vector<std::string>{"1741 1 ", "1741 1 ", "1738 1  5"}));
}

TEST_F(AnalyticsAllowedTest, WithoutAFeedbackServiceTheUpdateServiceTurnsAnalyticsOn) {
  world_.files.AddFile(kUpdater);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_EQ(world_.launcher.CommandLines(), std::vector<std::u16string>{Line(kUpdater, u"-enableAnalytics")});
}

TEST_F(MsiAnalyticsAllowedTest, AnMsiInstallNeverTurnsAnalyticsOn) {
  world_.files.AddFile(kUpdater);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

TEST_F(MaintenanceCommandsTest, AnalyticsStayOffUnlessAllowed) {
  world_.files.AddFile(kUpdater);
  EXPECT_TRUE(Commands().RemoveFeedbackService(MString(kFeedback), MString(kUpdater)));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

// The update service.

TEST_F(MaintenanceCommandsTest, ReleasePlugInKeepsTheUpdateService) {
  world_.files.AddFile(kUpdater);
  Install(u"Plugin", false);
  EXPECT_TRUE(Commands().RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_TRUE(world_.files.Exists(kUpdater));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

TEST_F(NewerOsClassTest, ReleaseActiveXCountsOnlyWhereThisInstallerManagesIt) {
  world_.files.AddFile(kUpdater);
  Install(u"ActiveX", false);
  EXPECT_TRUE(Commands().RemoveUpdateServiceFile(MString(kUpdater), false));
  EXPECT_FALSE(world_.files.Exists(kUpdater));
}

TEST_F(MaintenanceCommandsTest, DebuggerPlayerLetsTheServiceUninstallTwiceWithNotify) {
  world_.files.AddFile(kUpdater);
  Install(u"Pepper", true);
  EXPECT_TRUE(Commands().RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_EQ(world_.launcher.CommandLines(),
            (std::vector<std::u16string>{Line(kUpdater, u"-uninstall"), Line(kUpdater, u"-setNotifyAutoUpdate"),
                                         Line(kUpdater, u"-uninstall")}));
  EXPECT_FALSE(world_.files.Exists(kUpdater));
  const auto& writes = world_.registry.Writes();
  EXPECT_EQ(writes.back().path,
            u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\UpdateSvc.exe");
}

TEST_F(MaintenanceCommandsTest, FailedNotifyModeSkipsTheUninstallButTheFileStillGoes) {
  world_.files.AddFile(kUpdater);
  world_.launcher.SetExitCode(Line(kUpdater, u"-setNotifyAutoUpdate"), 1);
  EXPECT_FALSE(Commands().RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_EQ(world_.launcher.CommandLines(),
            (std::vector<std::u16string>{Line(kUpdater, u"-uninstall"), Line(kUpdater, u"-setNotifyAutoUpdate")}));
  EXPECT_FALSE(world_.files.Exists(kUpdater));
}

TEST_F(MaintenanceCommandsTest, MissingUpdateServiceIsNothingToDo) {
  EXPECT_TRUE(Commands().RemoveUpdateServiceFile(MString(kUpdater), true));
  EXPECT_TRUE(world_.launcher.Runs().empty());
}

}  // namespace
