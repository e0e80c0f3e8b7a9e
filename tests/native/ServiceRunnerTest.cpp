#include <gtest/gtest.h>

#include "install/ServiceRunner.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kUpdater[] = u"C:\\Program Files\\Lumen\\UpdateSvc.exe";
constexpr char16_t kTaskHost[] = u"Host { TaskCommandPath \"C:\\Lumen\\Notifier.exe\"; }";

std::u16string Line(const char16_t* switchText) { return std::u16string(kUpdater) + u" " + switchText; }
ServiceRunner Runner(TestWorld& world) {
  return ServiceRunner(ServiceRunner::Service::Update, MString(kUpdater), *world.host, world.GetPlatform());
}

class ServiceRunnerTest : public WorldTest {
 protected:
  ServiceRunnerTest() : WorldTest({}, kTaskHost) {}
  ServiceRunner Runner() { return ::Runner(world_); }
};

TEST_F(ServiceRunnerTest, CommandIsTheUnquotedPathAndSwitchWithoutWindowAndATenMinuteWait) {
  EXPECT_TRUE(Runner().RunUninstallCommand());
  EXPECT_EQ(world_.launcher.Runs(), (std::vector<FakeProcessLauncher::Run>{{Line(u"-uninstall"), 0xC000000, 600000}}));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceRunnerTest, ExitCodeDecidesButNotInTheRemovalForm) {
  world_.launcher.SetExitCode(Line(u"-enableAnalytics"), 1);
  EXPECT_FALSE(Runner().RunAnalyticsCommand());
  // A run still going at the deadline is judged by the still-active code, and isn't killed.
  world_.launcher.SetExitCode(Line(u"-uninstall"), 259);
  EXPECT_FALSE(Runner().RunUninstallCommand());
  world_.launcher.SetExitCode(Line(u"-uninstall"), 7);
  EXPECT_TRUE(Runner().RunServiceCommandUnjudged(u"-uninstall"));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceRunnerTest, FailedStartReports1118OrTheRemovalForm1739InDecimal) {
  world_.launcher.FailStart(Line(u"-uninstall"), 193);
  EXPECT_FALSE(Runner().RunUninstallCommand());
  EXPECT_FALSE(Runner().RunServiceCommandUnjudged(u"-uninstall"));
  EXPECT_EQ(world_.Reports(), (Strings{"1118 1 ", "1739 1 193"}));
}

TEST_F(ServiceRunnerTest, ModesRunTheirSwitchesInOrderAndOnlyModeTwoLeavesTheNotifierTaskAlone) {
  const struct {
    int32_t mode;
    Paths lines;
    bool task;
  } cases[] = {
      {0, {Line(u"-setSilentAutoUpdate")}, true},
      {1, {Line(u"-uninstall"), Line(u"-setNotifyAutoUpdate")}, true},
      {2, {Line(u"-uninstall"), Line(u"-setDisableAutoUpdate")}, false},
      {4, {Line(u"-setDisableAutoUpdate")}, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mode);
    TestWorld world;
    EXPECT_TRUE(::Runner(world).SetUpdateMode(c.mode));
    EXPECT_EQ(world.launcher.CommandLines(), c.lines);
    // Without the pepper bit no task is touched.
    EXPECT_TRUE(world.scheduler.Steps().empty());
    TestWorld pepper({u"-ppapi"}, kTaskHost);
    EXPECT_TRUE(::Runner(pepper).SetUpdateMode(c.mode));
    EXPECT_EQ(pepper.scheduler.HasTask(u"Corva Lumen Player PPAPI Notifier"), c.task);
    if (!c.task) {
      EXPECT_TRUE(pepper.scheduler.Steps().empty());
    }
  }
}

TEST_F(ServiceRunnerTest, BothSwitchesOfAModeRunEvenWhenTheFirstFailsAndAnUnknownModeRunsNothing) {
  world_.launcher.SetExitCode(Line(u"-uninstall"), 1);
  EXPECT_FALSE(Runner().SetUpdateMode(1));
  EXPECT_EQ(world_.launcher.CommandLines(), (Paths{Line(u"-uninstall"), Line(u"-setNotifyAutoUpdate")}));
  // An unknown mode runs nothing.
  EXPECT_FALSE(Runner().SetUpdateMode(7));
  EXPECT_EQ(world_.launcher.Runs().size(), 2u);
  EXPECT_EQ(world_.Reports(), Strings{"1118 1 "});
}

}  // namespace
