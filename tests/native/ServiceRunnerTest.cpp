#include "install/ServiceRunner.h"

#include <gtest/gtest.h>

#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kUpdater[] = u"C:\\Program Files\\Lumen\\UpdateSvc.exe";

std::u16string Line(const char16_t* switchText) { return std::u16string(kUpdater) + u" " + switchText; }

class ServiceRunnerTest : public ::testing::Test {
 protected:
  explicit ServiceRunnerTest(std::vector<std::u16string> switches = {})
      : world_(switches, u"Host { TaskCommandPath \"C:\\Lumen\\Notifier.exe\"; }") {}

  ServiceRunner Runner() {
    return ServiceRunner(ServiceRunner::Service::Update, MString(kUpdater), *world_.host, world_.GetPlatform());
  }

  RemovalTestWorld world_;
};

class ServiceRunnerWithPepperTest : public ServiceRunnerTest {
 protected:
  ServiceRunnerWithPepperTest() : ServiceRunnerTest({u"-ppapi"}) {}
};

TEST_F(ServiceRunnerTest, RunnersCarryTheServicesNames) {
  ServiceRunner update = Runner();
  EXPECT_EQ(update.serviceName.ToUtf8(), "CorvaLumenPlayerUpdateSvc");
  EXPECT_EQ(update.displayName.ToUtf8(), "Corva Lumen Player Update Service");
  ServiceRunner feedback(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world_.host, world_.GetPlatform());
  EXPECT_EQ(feedback.serviceName.ToUtf8(), "CorvaLumenPlayerFeedbackSvc");
  EXPECT_EQ(feedback.displayName.ToUtf8(), "Corva Lumen Player Feedback Service");
}

TEST_F(ServiceRunnerTest, CommandIsTheUnquotedPathAndSwitchWithoutWindowAndATenMinuteWait) {
  EXPECT_TRUE(Runner().RunUninstallCommand());
  ASSERT_EQ(world_.launcher.Runs().size(), 1u);
  EXPECT_EQ(world_.launcher.Runs()[0], (FakeProcessLauncher::Run{Line(u"-uninstall"), 0xC000000, 600000}));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceRunnerTest, ExitCodeDecides) {
  world_.launcher.SetExitCode(Line(u"-enableAnalytics"), 1);
  EXPECT_FALSE(Runner().RunAnalyticsCommand());
  // A run still going at the deadline is judged by the still-active code, and isn't killed.
  world_.launcher.SetExitCode(Line(u"-uninstall"), 259);
  EXPECT_FALSE(Runner().RunUninstallCommand());
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceRunnerTest, FailedStartReports1118OrTheRemovalForm1739InDecimal) {
  world_.launcher.FailStart(Line(u"-uninstall"), 193);
  EXPECT_FALSE(Runner().RunUninstallCommand());
  EXPECT_FALSE(Runner().RunServiceCommandUnjudged(u"-uninstall"));
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"1118 1 ", "1739 1 193"}));
}

TEST_F(ServiceRunnerTest, RemovalFormDoesNotJudgeTheExitCode) {
  world_.launcher.SetExitCode(Line(u"-uninstall"), 7);
  EXPECT_TRUE(Runner().RunServiceCommandUnjudged(u"-uninstall"));
}

TEST_F(ServiceRunnerTest, ModesRunTheirSwitchesInOrder) {
  struct Case {
    int32_t mode;
    std::vector<std::u16string> lines;
  };
  const Case cases[] = {
      {0, {Line(u"-setSilentAutoUpdate")}},
      {1, {Line(u"-uninstall"), Line(u"-setNotifyAutoUpdate")}},
      {2, {Line(u"-uninstall"), Line(u"-setDisableAutoUpdate")}},
      {3, {Line(u"-setNotifyAutoUpdate")}},
      {4, {Line(u"-setDisableAutoUpdate")}},
  };
  for (const Case& c : cases) {
    RemovalTestWorld world;
    ServiceRunner runner(ServiceRunner::Service::Update, MString(kUpdater), *world.host, world.GetPlatform());
    EXPECT_TRUE(runner.SetUpdateMode(c.mode)) << c.mode;
    EXPECT_EQ(world.launcher.CommandLines(), c.lines) << c.mode;
  }
}

TEST_F(ServiceRunnerTest, BothSwitchesOfAModeRunEvenWhenTheFirstFails) {
  world_.launcher.SetExitCode(Line(u"-uninstall"), 1);
  EXPECT_FALSE(Runner().SetUpdateMode(1));
  EXPECT_EQ(world_.launcher.CommandLines(), (std::vector<std::u16string>{Line(u"-uninstall"), Line(u"-setNotifyAutoUpdate")}));
}

TEST_F(ServiceRunnerTest, UnknownModeReports1118AndRunsNothing) {
  EXPECT_FALSE(Runner().SetUpdateMode(7));
  EXPECT_TRUE(world_.launcher.Runs().empty());
  EXPECT_EQ(world_.Reports(), std::vector<std::string>{"1118 1 "});
}

TEST_F(ServiceRunnerTest, WithoutThePepperBitNoTaskIsTouched) {
  EXPECT_TRUE(Runner().SetUpdateMode(1));
  EXPECT_TRUE(world_.scheduler.Steps().empty());
}

TEST_F(ServiceRunnerWithPepperTest, ModeOneRefreshesTheNotifierTaskWithTheHostsPath) {
  EXPECT_TRUE(Runner().SetUpdateMode(1));
  EXPECT_TRUE(world_.scheduler.HasTask(u"Corva Lumen Player PPAPI Notifier"));
  EXPECT_EQ(world_.scheduler.LastDefinition().commandPath, u"C:\\Lumen\\Notifier.exe");
  EXPECT_EQ(world_.scheduler.LastDefinition().commandArguments, u"-check pepperplugin");
}

TEST_F(ServiceRunnerWithPepperTest, ModeTwoLeavesTheTaskAloneUnlikeTheOthers) {
  EXPECT_TRUE(Runner().SetUpdateMode(2));
  EXPECT_TRUE(world_.scheduler.Steps().empty());
  for (int32_t mode : {0, 3, 4}) {
    RemovalTestWorld world({u"-ppapi"});
    ServiceRunner runner(ServiceRunner::Service::Update, MString(kUpdater), *world.host, world.GetPlatform());
    runner.SetUpdateMode(mode);
    EXPECT_TRUE(world.scheduler.HasTask(u"Corva Lumen Player PPAPI Notifier")) << mode;
  }
}

TEST_F(ServiceRunnerWithPepperTest, FailedTaskLeavesTheModesResultAlone) {
  world_.scheduler.Fail(TaskStep::InitializeCom, TaskResult::kFailed);
  EXPECT_TRUE(Runner().SetUpdateMode(3));
  world_.launcher.SetExitCode(Line(u"-setDisableAutoUpdate"), 2);
  EXPECT_FALSE(Runner().SetUpdateMode(4));
}

}  // namespace
