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
  EXPECT_EQ(world_.Codes(), (CodeList{37, 39, 41, 39, 40, 39, 41, 36, 1106}));
}

TEST_F(NotifierTaskTest, ListingWithoutSessionsFallsBackOnTheConsoleSessionAndAFailedOneOnSessionZero) {
  world_.sessions.SetConsoleSession(1);
  world_.sessions.SetNames(1, u"root", u"WINEHOST");
  EXPECT_EQ(UserName(world_), u"WINEHOST\\root");
  EXPECT_EQ(world_.Codes(), (CodeList{37, 36, 1106}));

  TestWorld failed;
  failed.sessions.FailEnumeration(5);
  failed.sessions.SetNames(0, u"svc", u"");
  EXPECT_EQ(UserName(failed), u"svc");
  EXPECT_EQ(failed.Codes(), (CodeList{1754, 36, 1746, 1106}));
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

// The task service.

TEST_F(NotifierTaskTest, NewTaskIsDefinedInFullAndRegisteredForTheUser) {
  world_.sessions.AddSession({1, kActive, 0, u"alice", u"CORVA"});
  world_.system.SetRandomDraws({17, 43});
  EXPECT_TRUE(Create(world_));
  EXPECT_TRUE(world_.scheduler.HasTask(kTaskName));
  const TaskDefinition& d = world_.scheduler.LastDefinition();
  EXPECT_EQ(d.startBoundary, u"2000-01-01T00:53:00Z");  // 17 % 6 and 43 % 10
  EXPECT_EQ(d.commandArguments, u"-check pepperplugin");
  EXPECT_TRUE(d.startWhenAvailable && d.runOnlyIfNetworkAvailable && !d.disallowStartIfOnBatteries);
  EXPECT_EQ(d.userName, u"CORVA\\alice");
  EXPECT_EQ(d.logonType, 3);
  EXPECT_EQ(world_.Reports().back(), "31 0 ");
  EXPECT_EQ(world_.scheduler.OpenSessions(), 0);
}

TEST_F(NotifierTaskTest, DescriptionComesFromTheRunningProgramsTableOrShowsTheMarker) {
  EXPECT_TRUE(Create(world_));
  EXPECT_EQ(world_.scheduler.LastDefinition().description, u"Checks for player updates");
  EXPECT_EQ(world_.system.LastStringModule(), nullptr);
  TestWorld bare;
  EXPECT_TRUE(Create(bare));
  EXPECT_EQ(bare.scheduler.LastDefinition().description, u"MISSING LOCALIZATION");
}

TEST_F(NotifierTaskTest, EachStepOfANewTaskReportsItsOwnCodeAndEndsTheStep) {
  const std::pair<TaskStep, int32_t> cases[] = {
      {TaskStep::InitializeCom, 1168}, {TaskStep::SetStartBoundary, 1193}, {TaskStep::RegisterDefinition, 1703}};
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
}

TEST_F(NotifierTaskTest, RefreshKeepsTheTriggerAndRewritesTheAction) {
  world_.scheduler.AddTask(kTaskName);
  EXPECT_TRUE(Create(world_));
  for (TaskStep step :
       {TaskStep::TakeRegisteredDefinition, TaskStep::SetRepetitionInterval, TaskStep::ClearActions, TaskStep::SetPath})
    EXPECT_TRUE(Ran(world_, step));
  EXPECT_FALSE(Ran(world_, TaskStep::CreateTrigger));
  EXPECT_EQ(world_.Reports().back(), "30 0 ");
}

// Each failing step of a run and the code it ends with.
struct StepFailure {
  TaskStep step;
  int32_t code;
};

TEST_F(NotifierTaskTest, RefreshFailuresHaveTheirOwnCodes) {
  const StepFailure cases[] = {
      {TaskStep::TakeRegisteredDefinition, 1173}, {TaskStep::RegisterDefinition, 1759}};
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
  } cases[] = {{false, {TaskStep::InitializeCom, 1724}},
               {false, {TaskStep::DeleteTask, 1721}},
               {true, {TaskStep::CreateLegacyScheduler, 1729}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.failure.code);
    auto world = World(c.older);
    world->scheduler.Fail(c.failure.step, TaskResult::kFailed);
    EXPECT_FALSE(Remove(*world));
    EXPECT_EQ(world->Reports(), Strings{std::to_string(c.failure.code) + " 1 -2147467259"});
  }
}

}  // namespace
