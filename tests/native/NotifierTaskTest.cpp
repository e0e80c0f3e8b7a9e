#include "removal/NotifierTask.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

using Session = FakeTerminalSessions::Session;
constexpr char16_t kTaskName[] = u"Corva Lumen Player PPAPI Notifier";
constexpr uint32_t kDisconnected = 4;

class NotifierTaskTest : public ::testing::Test {
 protected:
  NotifierTaskTest() { world_.system.SetResourceString(170, u"Checks for player updates"); }

  bool Create() {
    return NotifierTask::CreateNotifierTask(MString(u"C:\\Lumen\\Notifier.exe"), MString(u"-check pepperplugin"),
                                            *world_.host, world_.GetPlatform());
  }
  std::u16string UserName() {
    return NotifierTask(MString(u"p"), MString(u"a"), *world_.host, world_.GetPlatform()).userName;
  }
  bool Ran(TaskStep step) const {
    const auto& steps = world_.scheduler.Steps();
    return std::find(steps.begin(), steps.end(), step) != steps.end();
  }

  RemovalTestWorld world_;
};

// The user is found from the sessions.

TEST_F(NotifierTaskTest, LastActiveSessionGivesDomainAndUser) {
  world_.sessions.AddSession({0, kDisconnected, 0, u"SYSTEM", u"NT AUTHORITY"});
  world_.sessions.AddSession({2, SessionInfo::kActive, 0, u"alice", u"CORVA"});
  world_.sessions.AddSession({3, kDisconnected, 0, u"bob", u"CORVA"});
  EXPECT_EQ(UserName(), u"CORVA\\alice");
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"37 0 3", "39 1 0", "41 1 0", "39 1 2", "40 1 2", "39 1 3",
                                                        "41 1 2", "36 1 2", "1106 1 "}));
}

TEST_F(NotifierTaskTest, FailedStateQueryOnTheLastSessionLeavesThatSessionChosen) {
  world_.sessions.AddSession({2, SessionInfo::kActive, 0, u"alice", u"CORVA"});
  world_.sessions.AddSession({5, SessionInfo::kActive, 1314, u"eve", u"CORVA"});
  EXPECT_EQ(UserName(), u"CORVA\\eve");
  EXPECT_EQ(world_.Reports(),
            (std::vector<std::string>{"37 0 2", "39 1 2", "40 1 2", "1755 1 1314", "36 1 5", "1106 1 "}));
}

TEST_F(NotifierTaskTest, ListingWithoutSessionsFallsBackOnTheConsoleSession) {
  world_.sessions.SetConsoleSession(1);
  world_.sessions.SetNames(1, u"root", u"WINEHOST");
  EXPECT_EQ(UserName(), u"WINEHOST\\root");
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"37 0 0", "36 1 1", "1106 1 "}));
}

TEST_F(NotifierTaskTest, FailedListingReportsAndAsksSessionZero) {
  world_.sessions.FailEnumeration(5);
  world_.sessions.SetNames(0, u"svc", u"");
  EXPECT_EQ(UserName(), u"svc");
  EXPECT_EQ(world_.sessions.TextQueries(), (std::vector<uint32_t>{0, 0}));
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"1754 1 5", "36 1 0", "1746 1 ", "1106 1 "}));
}

TEST_F(NotifierTaskTest, NamesThatDoNotFitFallBackToTheUserAloneOrNothing) {
  {
    RemovalTestWorld world;
    world.sessions.AddSession({1, SessionInfo::kActive, 0, std::u16string(136, u'u'), std::u16string(136, u'd')});
    std::u16string name = NotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()).userName;
    EXPECT_EQ(name, std::u16string(136, u'u'));
    EXPECT_EQ(world.Codes()[world.Codes().size() - 2], 1746);
  }
  {
    RemovalTestWorld world;
    world.sessions.AddSession({1, SessionInfo::kActive, 0, std::u16string(135, u'u'), std::u16string(136, u'd')});
    std::u16string name = NotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()).userName;
    EXPECT_EQ(name.size(), 272u);
  }
  {
    RemovalTestWorld world;
    world.sessions.AddSession({1, SessionInfo::kActive, 0, std::u16string(272, u'u'), u""});
    std::u16string name = NotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()).userName;
    EXPECT_EQ(name, u"");
    EXPECT_EQ(world.Codes()[world.Codes().size() - 2], 1747);
  }
}

TEST_F(NotifierTaskTest, UnreadableUserOrDomainIsReportedWithItsError) {
  world_.sessions.AddSession({1, SessionInfo::kActive, 0, u"alice", u"CORVA", 0, 1317});
  EXPECT_EQ(UserName(), u"alice");
  EXPECT_EQ(world_.Codes(), (std::vector<int32_t>{37, 39, 40, 36, 1753, 1746, 1106}));

  RemovalTestWorld world;
  world.sessions.AddSession({1, SessionInfo::kActive, 0, u"alice", u"CORVA", 1317, 0});
  std::u16string name = NotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()).userName;
  EXPECT_EQ(name, u"");
  EXPECT_EQ(world.Codes(), (std::vector<int32_t>{37, 39, 40, 36, 1752, 1747, 1106}));
}

TEST_F(NotifierTaskTest, WithoutTheSessionLibraryTheTaskIsRegisteredForNoUserAndNothingIsSaid) {
  world_.sessions.SetAvailable(false);
  EXPECT_TRUE(Create());
  EXPECT_EQ(world_.scheduler.LastDefinition().userName, u"");
  EXPECT_EQ(world_.Reports(), (std::vector<std::string>{"1106 1 ", "31 0 "}));
}

// The task service.

TEST_F(NotifierTaskTest, NewTaskIsDefinedInFullAndRegisteredForTheUser) {
  world_.sessions.AddSession({1, SessionInfo::kActive, 0, u"alice", u"CORVA"});
  world_.system.SetRandomDraws({17, 43});
  EXPECT_TRUE(Create());
  EXPECT_TRUE(world_.scheduler.HasTask(kTaskName));
  const TaskDefinition& d = world_.scheduler.LastDefinition();
  EXPECT_EQ(d.name, kTaskName);
  EXPECT_EQ(d.author, u"Corva Systems Incorporated");
  EXPECT_EQ(d.description, u"Checks for player updates");
  EXPECT_EQ(d.triggerId, u"NotificationTrigger");
  EXPECT_EQ(d.triggerType, 2);
  EXPECT_EQ(d.startBoundary, u"2000-01-01T00:53:00Z");  // 17 % 6 and 43 % 10
  EXPECT_EQ(d.repetitionDuration, u"P1D");
  EXPECT_EQ(d.repetitionInterval, u"PT1H");
  EXPECT_EQ(d.actionType, 0);
  EXPECT_EQ(d.commandPath, u"C:\\Lumen\\Notifier.exe");
  EXPECT_EQ(d.commandArguments, u"-check pepperplugin");
  EXPECT_TRUE(d.startWhenAvailable);
  EXPECT_EQ(d.compatibility, 2);
  EXPECT_FALSE(d.disallowStartIfOnBatteries);
  EXPECT_TRUE(d.runOnlyIfNetworkAvailable);
  EXPECT_EQ(d.userName, u"CORVA\\alice");
  EXPECT_EQ(d.registrationFlags, 6);
  EXPECT_EQ(d.logonType, 3);
  EXPECT_EQ(world_.Reports().back(), "31 0 ");
  EXPECT_EQ(world_.scheduler.OpenSessions(), 0);
}

TEST_F(NotifierTaskTest, FailedRandomDrawsLeaveTheMinuteDigitsAtZero) {
  EXPECT_TRUE(Create());
  EXPECT_EQ(world_.scheduler.LastDefinition().startBoundary, u"2000-01-01T00:00:00Z");
}

TEST_F(NotifierTaskTest, EachStepOfANewTaskReportsItsOwnCodeAndEndsTheStep) {
  struct Case {
    TaskStep step;
    int32_t code;
  };
  const Case cases[] = {
      {TaskStep::InitializeCom, 1168},     {TaskStep::CreateTaskService, 1170},
      {TaskStep::Connect, 1171},           {TaskStep::OpenRootFolder, 1172},
      {TaskStep::NewDefinition, 1181},     {TaskStep::TakeSettings, 1182},
      {TaskStep::SetCompatibility, 1183},  {TaskStep::SetDisallowStartIfOnBatteries, 1184},
      {TaskStep::SetRunOnlyIfNetworkAvailable, 1185}, {TaskStep::TakeRegistrationInfo, 1186},
      {TaskStep::SetAuthor, 1187},         {TaskStep::SetDescription, 1188},
      {TaskStep::TakeTriggers, 1189},      {TaskStep::CreateTrigger, 1190},
      {TaskStep::QueryDailyTrigger, 1191}, {TaskStep::SetTriggerId, 1192},
      {TaskStep::SetStartBoundary, 1193},  {TaskStep::SetDaysInterval, 1194},
      {TaskStep::TakeRepetition, 1195},    {TaskStep::SetRepetitionDuration, 1196},
      {TaskStep::SetRepetitionInterval, 1197}, {TaskStep::TakeActions, 1198},
      {TaskStep::CreateAction, 1199},      {TaskStep::QueryExecAction, 1700},
      {TaskStep::SetPath, 1701},           {TaskStep::SetArguments, 1702},
      {TaskStep::RegisterDefinition, 1703},
  };
  for (const Case& c : cases) {
    RemovalTestWorld world;
    world.scheduler.Fail(c.step, TaskResult::kNotImplemented);
    bool created = NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform());
    EXPECT_FALSE(created) << c.code;
    EXPECT_EQ(world.Reports().back(), std::to_string(c.code) + " 1 -2147467263") << c.code;
    EXPECT_EQ(world.scheduler.Steps().back(), c.step) << c.code;
    EXPECT_FALSE(world.scheduler.HasTask(kTaskName)) << c.code;
    EXPECT_EQ(world.scheduler.OpenSessions(), 0) << c.code;
  }
}

TEST_F(NotifierTaskTest, StartWhenAvailableFailureGoesToTheDebugOutputOnly) {
  world_.scheduler.Fail(TaskStep::SetStartWhenAvailable, TaskResult::kNotImplemented);
  EXPECT_FALSE(Create());
  EXPECT_EQ(world_.scheduler.DebugOutput(), std::vector<std::u16string>{u"\nCannot put setting information: 80004001"});
  EXPECT_EQ(world_.Codes().back(), 1106);
}

TEST_F(NotifierTaskTest, SecurityAlreadySetIsReportedButTheStepGoesOn) {
  world_.scheduler.Fail(TaskStep::InitializeSecurity, TaskResult::kSecurityAlreadySet);
  EXPECT_TRUE(Create());
  std::vector<std::string> reports = world_.Reports();
  EXPECT_NE(std::find(reports.begin(), reports.end(), "1169 1 -2147417831"), reports.end());
  EXPECT_EQ(reports.back(), "31 0 ");

  RemovalTestWorld world;
  world.scheduler.Fail(TaskStep::InitializeSecurity, TaskResult::kFailed);
  EXPECT_FALSE(NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()));
  EXPECT_EQ(world.Reports().back(), "1169 1 -2147467259");
}

TEST_F(NotifierTaskTest, RefreshKeepsTheTriggerAndRewritesTheAction) {
  world_.scheduler.AddTask(kTaskName);
  EXPECT_TRUE(Create());
  EXPECT_TRUE(Ran(TaskStep::TakeRegisteredDefinition));
  EXPECT_TRUE(Ran(TaskStep::SetRepetitionInterval));
  EXPECT_TRUE(Ran(TaskStep::ClearActions));
  EXPECT_TRUE(Ran(TaskStep::SetPath));
  EXPECT_FALSE(Ran(TaskStep::NewDefinition));
  EXPECT_FALSE(Ran(TaskStep::CreateTrigger));
  EXPECT_FALSE(Ran(TaskStep::SetStartBoundary));
  EXPECT_EQ(world_.Reports().back(), "30 0 ");
}

TEST_F(NotifierTaskTest, RefreshFailuresHaveTheirOwnCodes) {
  struct Case {
    TaskStep step;
    int32_t code;
  };
  const Case cases[] = {
      {TaskStep::TakeRegisteredDefinition, 1173}, {TaskStep::TakeTriggers, 1174},
      {TaskStep::CountTriggers, 1175},            {TaskStep::TakeFirstTrigger, 1177},
      {TaskStep::TakeRepetition, 1178},           {TaskStep::SetRepetitionInterval, 1179},
      {TaskStep::TakeSettings, 1182},             {TaskStep::SetCompatibility, 1183},
      {TaskStep::RegisterDefinition, 1759},
  };
  for (const Case& c : cases) {
    RemovalTestWorld world;
    world.scheduler.AddTask(kTaskName);
    world.scheduler.Fail(c.step, TaskResult::kFailed);
    EXPECT_FALSE(NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()));
    EXPECT_EQ(world.Reports().back(), std::to_string(c.code) + " 1 -2147467259") << c.code;
  }
  RemovalTestWorld world;
  world.scheduler.AddTask(kTaskName);
  world.scheduler.SetAnswer(TaskStep::CountTriggers, 0);
  EXPECT_FALSE(NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()));
  EXPECT_EQ(world.Reports().back(), "1176 1 0");
}

// The older scheduler, before Windows 6.0.

TEST_F(NotifierTaskTest, OlderSchedulerMakesAWorkItemWithARandomStartMinute) {
  world_.system.SetMajorVersion(5);
  world_.system.SetRandomDraws({125});
  world_.sessions.AddSession({0, SessionInfo::kActive, 0, u"alice", u"CORVA"});
  EXPECT_TRUE(Create());
  EXPECT_TRUE(world_.scheduler.HasWorkItem(kTaskName));
  const TaskDefinition& d = world_.scheduler.LastDefinition();
  EXPECT_EQ(d.startMinute, 5);
  EXPECT_EQ(d.workItemFlags, 9216u);
  EXPECT_EQ(d.userName, u"CORVA\\alice");
  EXPECT_FALSE(Ran(TaskStep::InitializeCom));
  EXPECT_EQ(world_.Reports().back(), "33 0 ");

  EXPECT_TRUE(Create());
  EXPECT_TRUE(Ran(TaskStep::UpdateFirstWorkItemTrigger));
  EXPECT_EQ(world_.Reports().back(), "32 0 ");
}

TEST_F(NotifierTaskTest, OlderSchedulerFailuresHaveTheirCodes) {
  const std::pair<TaskStep, int32_t> fresh[] = {{TaskStep::SetCreator, 1717},
                                                {TaskStep::SetComment, 1718},
                                                {TaskStep::SetApplicationName, 1719},
                                                {TaskStep::SetWorkItemFlags, 1720},
                                                {TaskStep::SetParameters, 1731}};
  for (auto [step, code] : fresh) {
    RemovalTestWorld world;
    world.system.SetMajorVersion(5);
    world.scheduler.Fail(step, TaskResult::kFailed);
    EXPECT_FALSE(NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()));
    EXPECT_EQ(world.Codes().back(), code);
  }
  const std::pair<TaskStep, int32_t> existing[] = {{TaskStep::CountWorkItemTriggers, 1708},
                                                   {TaskStep::SetAccount, 1756},
                                                   {TaskStep::SetWorkItemFlags, 1756}};
  for (auto [step, code] : existing) {
    RemovalTestWorld world;
    world.system.SetMajorVersion(5);
    world.scheduler.AddWorkItem(kTaskName);
    world.scheduler.Fail(step, TaskResult::kFailed);
    EXPECT_FALSE(NotifierTask::CreateNotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()));
    EXPECT_EQ(world.Codes().back(), code);
  }
}

// Removal.

TEST_F(NotifierTaskTest, RemovalDeletesTheTaskAndAnAbsentOneIsNoFailure) {
  world_.scheduler.AddTask(kTaskName);
  EXPECT_TRUE(NotifierTask::RemoveNotifierTask(*world_.host, world_.GetPlatform()));
  EXPECT_FALSE(world_.scheduler.HasTask(kTaskName));
  EXPECT_TRUE(NotifierTask::RemoveNotifierTask(*world_.host, world_.GetPlatform()));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(NotifierTaskTest, RemovalFailuresHaveTheirCodes) {
  const std::pair<TaskStep, int32_t> service[] = {{TaskStep::InitializeCom, 1724},
                                                  {TaskStep::InitializeSecurity, 1725},
                                                  {TaskStep::CreateTaskService, 1726},
                                                  {TaskStep::DeleteTask, 1721}};
  for (auto [step, code] : service) {
    RemovalTestWorld world;
    world.scheduler.Fail(step, TaskResult::kFailed);
    EXPECT_FALSE(NotifierTask::RemoveNotifierTask(*world.host, world.GetPlatform()));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{std::to_string(code) + " 1 -2147467259"});
  }
  const std::pair<TaskStep, int32_t> older[] = {{TaskStep::InitializeComLegacy, 1730},
                                                {TaskStep::CreateLegacyScheduler, 1729}};
  for (auto [step, code] : older) {
    RemovalTestWorld world;
    world.system.SetMajorVersion(5);
    world.scheduler.Fail(step, TaskResult::kFailed);
    EXPECT_FALSE(NotifierTask::RemoveNotifierTask(*world.host, world.GetPlatform()));
    EXPECT_EQ(world.Codes(), std::vector<int32_t>{code});
  }
}

}  // namespace
