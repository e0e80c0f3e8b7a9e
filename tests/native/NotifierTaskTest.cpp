#include <gtest/gtest.h>

#include <algorithm>

#include "removal/NotifierTask.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

using Session = FakeTerminalSessions::Session;
constexpr char16_t kTaskName[] = u"Corva Lumen Player PPAPI Notifier";
constexpr uint32_t kDisconnected = 4;
constexpr uint32_t kActive = SessionInfo::kActive;

bool Create(TestWorld& world) {
  return NotifierTask::CreateNotifierTask(MString(u"C:\\Lumen\\Notifier.exe"), MString(u"-check pepperplugin"),
                                          *world.host, world.GetPlatform());
}
bool Remove(TestWorld& world) { return NotifierTask::RemoveNotifierTask(*world.host, world.GetPlatform()); }
std::u16string UserName(TestWorld& world) {
  return NotifierTask(MString(u"p"), MString(u"a"), *world.host, world.GetPlatform()).userName;
}
bool Ran(const TestWorld& world, TaskStep step) {
  const auto& steps = world.scheduler.Steps();
  return std::find(steps.begin(), steps.end(), step) != steps.end();
}
// A fresh world on the older scheduler (before Windows 6.0) or the task service.
std::unique_ptr<TestWorld> World(bool older, bool existing = false) {
  auto world = std::make_unique<TestWorld>();
  if (older) world->system.SetMajorVersion(5);
  if (existing && older) world->scheduler.AddWorkItem(kTaskName);
  if (existing && !older) world->scheduler.AddTask(kTaskName);
  return world;
}

class NotifierTaskTest : public WorldTest {
 protected:
  NotifierTaskTest() { world_.system.SetResourceString(170, u"Checks for player updates"); }
};

// The user is found from the sessions.

TEST_F(NotifierTaskTest, LastActiveSessionGivesDomainAndUser) {
  world_.sessions.AddSession({0, kDisconnected, 0, u"SYSTEM", u"NT AUTHORITY"});
  world_.sessions.AddSession({2, kActive, 0, u"alice", u"CORVA"});
  world_.sessions.AddSession({3, kDisconnected, 0, u"bob", u"CORVA"});
  EXPECT_EQ(UserName(world_), u"CORVA\\alice");
  EXPECT_EQ(world_.Reports(),
            (Strings{"37 0 3", "39 1 0", "41 1 0", "39 1 2", "40 1 2", "39 1 3", "41 1 2", "36 1 2", "1106 1 "}));
}

TEST_F(NotifierTaskTest, FailedStateQueryOnTheLastSessionLeavesThatSessionChosen) {
  world_.sessions.AddSession({2, kActive, 0, u"alice", u"CORVA"});
  world_.sessions.AddSession({5, kActive, 1314, u"eve", u"CORVA"});
  EXPECT_EQ(UserName(world_), u"CORVA\\eve");
  EXPECT_EQ(world_.Reports(), (Strings{"37 0 2", "39 1 2", "40 1 2", "1755 1 1314", "36 1 5", "1106 1 "}));
}

TEST_F(NotifierTaskTest, ListingWithoutSessionsFallsBackOnTheConsoleSessionAndAFailedOneOnSessionZero) {
  world_.sessions.SetConsoleSession(1);
  world_.sessions.SetNames(1, u"root", u"WINEHOST");
  EXPECT_EQ(UserName(world_), u"WINEHOST\\root");
  EXPECT_EQ(world_.Reports(), (Strings{"37 0 0", "36 1 1", "1106 1 "}));

  TestWorld failed;
  failed.sessions.FailEnumeration(5);
  failed.sessions.SetNames(0, u"svc", u"");
  EXPECT_EQ(UserName(failed), u"svc");
  EXPECT_EQ(failed.sessions.TextQueries(), (std::vector<uint32_t>{0, 0}));
  EXPECT_EQ(failed.Reports(), (Strings{"1754 1 5", "36 1 0", "1746 1 ", "1106 1 "}));
}

TEST_F(NotifierTaskTest, NamesThatDoNotFitOrCannotBeReadFallBackToTheUserAloneOrNothing) {
  const struct {
    Session session;
    std::u16string name;
    CodeList codes;
  } cases[] = {
      {{1, kActive, 0, std::u16string(136, u'u'), std::u16string(136, u'd')},
       std::u16string(136, u'u'),
       {37, 39, 40, 36, 1746, 1106}},
      {{1, kActive, 0, std::u16string(135, u'u'), std::u16string(136, u'd')},
       std::u16string(136, u'd') + u"\\" + std::u16string(135, u'u'),
       {37, 39, 40, 36, 1106}},
      {{1, kActive, 0, std::u16string(272, u'u'), u""}, u"", {37, 39, 40, 36, 1747, 1106}},
      {{1, kActive, 0, u"alice", u"CORVA", 0, 1317}, u"alice", {37, 39, 40, 36, 1753, 1746, 1106}},
      {{1, kActive, 0, u"alice", u"CORVA", 1317, 0}, u"", {37, 39, 40, 36, 1752, 1747, 1106}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name.size());
    TestWorld world;
    world.sessions.AddSession(c.session);
    EXPECT_EQ(UserName(world), c.name);
    EXPECT_EQ(world.Codes(), c.codes);
  }
}

TEST_F(NotifierTaskTest, WithoutTheSessionLibraryTheTaskIsRegisteredForNoUserAndNothingIsSaid) {
  world_.sessions.SetAvailable(false);
  EXPECT_TRUE(Create(world_));
  EXPECT_EQ(world_.scheduler.LastDefinition().userName, u"");
  EXPECT_EQ(world_.Reports(), (Strings{"1106 1 ", "31 0 "}));
}

// The task service.

TEST_F(NotifierTaskTest, NewTaskIsDefinedInFullAndRegisteredForTheUser) {
  world_.sessions.AddSession({1, kActive, 0, u"alice", u"CORVA"});
  world_.system.SetRandomDraws({17, 43});
  EXPECT_TRUE(Create(world_));
  EXPECT_TRUE(world_.scheduler.HasTask(kTaskName));
  const TaskDefinition& d = world_.scheduler.LastDefinition();
  EXPECT_EQ(d.description, u"Checks for player updates");
  EXPECT_EQ(d.startBoundary, u"2000-01-01T00:53:00Z");  // 17 % 6 and 43 % 10
  EXPECT_EQ(d.commandPath, u"C:\\Lumen\\Notifier.exe");
  EXPECT_EQ(d.commandArguments, u"-check pepperplugin");
  EXPECT_TRUE(d.startWhenAvailable && d.runOnlyIfNetworkAvailable && !d.disallowStartIfOnBatteries);
  EXPECT_EQ(d.userName, u"CORVA\\alice");
  EXPECT_EQ(d.logonType, 3);
  EXPECT_EQ(world_.Reports().back(), "31 0 ");
  EXPECT_EQ(world_.scheduler.OpenSessions(), 0);

  // Failed random draws leave the minute digits at zero.
  TestWorld undrawn;
  EXPECT_TRUE(Create(undrawn));
  EXPECT_EQ(undrawn.scheduler.LastDefinition().startBoundary, u"2000-01-01T00:00:00Z");
}

TEST_F(NotifierTaskTest, EachStepOfANewTaskReportsItsOwnCodeAndEndsTheStep) {
  const std::pair<TaskStep, int32_t> cases[] = {
      {TaskStep::InitializeCom, 1168}, {TaskStep::CreateTaskService, 1170}, {TaskStep::Connect, 1171},
      {TaskStep::OpenRootFolder, 1172}, {TaskStep::NewDefinition, 1181}, {TaskStep::TakeSettings, 1182},
      {TaskStep::SetCompatibility, 1183}, {TaskStep::SetDisallowStartIfOnBatteries, 1184},
      {TaskStep::SetRunOnlyIfNetworkAvailable, 1185}, {TaskStep::TakeRegistrationInfo, 1186},
      {TaskStep::SetAuthor, 1187}, {TaskStep::SetDescription, 1188}, {TaskStep::TakeTriggers, 1189},
      {TaskStep::CreateTrigger, 1190}, {TaskStep::QueryDailyTrigger, 1191}, {TaskStep::SetTriggerId, 1192},
      {TaskStep::SetStartBoundary, 1193}, {TaskStep::SetDaysInterval, 1194}, {TaskStep::TakeRepetition, 1195},
      {TaskStep::SetRepetitionDuration, 1196}, {TaskStep::SetRepetitionInterval, 1197}, {TaskStep::TakeActions, 1198},
      {TaskStep::CreateAction, 1199}, {TaskStep::QueryExecAction, 1700}, {TaskStep::SetPath, 1701},
      {TaskStep::SetArguments, 1702}, {TaskStep::RegisterDefinition, 1703},
  };
  for (auto [step, code] : cases) {
    SCOPED_TRACE(code);
    TestWorld world;
    world.scheduler.Fail(step, TaskResult::kNotImplemented);
    EXPECT_FALSE(Create(world));
    EXPECT_EQ(world.Reports().back(), std::to_string(code) + " 1 -2147467263");
    EXPECT_EQ(world.scheduler.Steps().back(), step);
    EXPECT_FALSE(world.scheduler.HasTask(kTaskName));
    EXPECT_EQ(world.scheduler.OpenSessions(), 0);
  }
}

TEST_F(NotifierTaskTest, StartWhenAvailableFailureGoesToTheDebugOutputOnly) {
  world_.scheduler.Fail(TaskStep::SetStartWhenAvailable, TaskResult::kNotImplemented);
  EXPECT_FALSE(Create(world_));
  EXPECT_EQ(world_.scheduler.DebugOutput(), Paths{u"\nCannot put setting information: 80004001"});
  EXPECT_EQ(world_.Codes().back(), 1106);
}

TEST_F(NotifierTaskTest, SecurityAlreadySetIsReportedButTheStepGoesOn) {
  world_.scheduler.Fail(TaskStep::InitializeSecurity, TaskResult::kSecurityAlreadySet);
  EXPECT_TRUE(Create(world_));
  Strings reports = world_.Reports();
  EXPECT_NE(std::find(reports.begin(), reports.end(), "1169 1 -2147417831"), reports.end());
  EXPECT_EQ(reports.back(), "31 0 ");

  TestWorld world;
  world.scheduler.Fail(TaskStep::InitializeSecurity, TaskResult::kFailed);
  EXPECT_FALSE(Create(world));
  EXPECT_EQ(world.Reports().back(), "1169 1 -2147467259");
}

TEST_F(NotifierTaskTest, RefreshKeepsTheTriggerAndRewritesTheAction) {
  world_.scheduler.AddTask(kTaskName);
  EXPECT_TRUE(Create(world_));
  for (TaskStep step :
       {TaskStep::TakeRegisteredDefinition, TaskStep::SetRepetitionInterval, TaskStep::ClearActions, TaskStep::SetPath})
    EXPECT_TRUE(Ran(world_, step));
  for (TaskStep step : {TaskStep::NewDefinition, TaskStep::CreateTrigger, TaskStep::SetStartBoundary})
    EXPECT_FALSE(Ran(world_, step));
  EXPECT_EQ(world_.Reports().back(), "30 0 ");
}

// Each failing step of a run and the code it ends with.
struct StepFailure {
  TaskStep step;
  int32_t code;
};

TEST_F(NotifierTaskTest, RefreshFailuresHaveTheirOwnCodes) {
  const StepFailure cases[] = {
      {TaskStep::TakeRegisteredDefinition, 1173},
      {TaskStep::TakeTriggers, 1174},
      {TaskStep::CountTriggers, 1175},
      {TaskStep::TakeFirstTrigger, 1177},
      {TaskStep::TakeRepetition, 1178},
      {TaskStep::SetRepetitionInterval, 1179},
      {TaskStep::TakeSettings, 1182},
      {TaskStep::SetCompatibility, 1183},
      {TaskStep::RegisterDefinition, 1759},
  };
  for (const StepFailure& c : cases) {
    SCOPED_TRACE(c.code);
    auto world = World(false, true);
    world->scheduler.Fail(c.step, TaskResult::kFailed);
    EXPECT_FALSE(Create(*world));
    EXPECT_EQ(world->Reports().back(), std::to_string(c.code) + " 1 -2147467259");
  }
  auto world = World(false, true);
  world->scheduler.SetAnswer(TaskStep::CountTriggers, 0);
  EXPECT_FALSE(Create(*world));
  EXPECT_EQ(world->Reports().back(), "1176 1 0");
}

TEST_F(NotifierTaskTest, OlderSchedulerMakesAWorkItemWithARandomStartMinute) {
  world_.system.SetMajorVersion(5);
  world_.system.SetRandomDraws({125});
  world_.sessions.AddSession({0, kActive, 0, u"alice", u"CORVA"});
  EXPECT_TRUE(Create(world_));
  EXPECT_TRUE(world_.scheduler.HasWorkItem(kTaskName));
  const TaskDefinition& d = world_.scheduler.LastDefinition();
  EXPECT_EQ(d.startMinute, 5);
  EXPECT_EQ(d.workItemFlags, 9216u);
  EXPECT_EQ(d.userName, u"CORVA\\alice");
  EXPECT_FALSE(Ran(world_, TaskStep::InitializeCom));
  EXPECT_EQ(world_.Reports().back(), "33 0 ");

  EXPECT_TRUE(Create(world_));
  EXPECT_TRUE(Ran(world_, TaskStep::UpdateFirstWorkItemTrigger));
  EXPECT_EQ(world_.Reports().back(), "32 0 ");
}

TEST_F(NotifierTaskTest, OlderSchedulerFailuresHaveTheirCodes) {
  const struct {
    bool existing;
    StepFailure failure;
  } cases[] = {{false, {TaskStep::SetCreator, 1717}},         {false, {TaskStep::SetComment, 1718}},
               {false, {TaskStep::SetApplicationName, 1719}}, {false, {TaskStep::SetWorkItemFlags, 1720}},
               {false, {TaskStep::SetParameters, 1731}},      {true, {TaskStep::CountWorkItemTriggers, 1708}},
               {true, {TaskStep::SetAccount, 1756}},          {true, {TaskStep::SetWorkItemFlags, 1756}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.failure.code);
    auto world = World(true, c.existing);
    world->scheduler.Fail(c.failure.step, TaskResult::kFailed);
    EXPECT_FALSE(Create(*world));
    EXPECT_EQ(world->Codes().back(), c.failure.code);
  }
}

// Removal.

TEST_F(NotifierTaskTest, RemovalDeletesTheTaskAndAnAbsentOneIsNoFailure) {
  world_.scheduler.AddTask(kTaskName);
  EXPECT_TRUE(Remove(world_));
  EXPECT_FALSE(world_.scheduler.HasTask(kTaskName));
  EXPECT_TRUE(Remove(world_));
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(NotifierTaskTest, RemovalFailuresHaveTheirCodes) {
  const struct {
    bool older;
    StepFailure failure;
  } cases[] = {{false, {TaskStep::InitializeCom, 1724}},      {false, {TaskStep::InitializeSecurity, 1725}},
               {false, {TaskStep::CreateTaskService, 1726}},  {false, {TaskStep::DeleteTask, 1721}},
               {true, {TaskStep::InitializeComLegacy, 1730}}, {true, {TaskStep::CreateLegacyScheduler, 1729}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.failure.code);
    auto world = World(c.older);
    world->scheduler.Fail(c.failure.step, TaskResult::kFailed);
    EXPECT_FALSE(Remove(*world));
    EXPECT_EQ(world->Reports(), Strings{std::to_string(c.failure.code) + " 1 -2147467259"});
  }
}

}  // namespace
