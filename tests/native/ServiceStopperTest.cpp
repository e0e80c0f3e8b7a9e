#include <gtest/gtest.h>

#include "install/ServiceRunner.h"
#include "removal/ServiceStopper.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kFeedback[] = u"CorvaLumenPlayerFeedbackSvc";
constexpr uint32_t kRunning = ServiceState::kRunning;
constexpr uint32_t kPending = ServiceState::kStopPending;
constexpr uint32_t kStopped = ServiceState::kStopped;

bool Stop(TestWorld& world) {
  ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"C:\\Lumen\\FeedbackSvc.exe"), *world.host,
                       world.GetPlatform());
  return ServiceStopper(*world.host, world.GetPlatform()).StopService(runner);
}

using ServiceStopperTest = WorldTest;

TEST_F(ServiceStopperTest, AbsentOrStoppedServiceIsTrueAndSilent) {
  EXPECT_TRUE(Stop(world_));
  world_.services.AddService(kFeedback, {kStopped});
  EXPECT_TRUE(Stop(world_));
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
  EXPECT_TRUE(world_.system.Sleeps().empty());
  EXPECT_EQ(world_.services.OpenHandles(), 0u);
}

TEST_F(ServiceStopperTest, ServiceThatNeverStopsTimesOutAfterThirtySecondsAndStillSucceeds) {
  world_.system.SetTickStep(1);  // each reading of the clock costs a millisecond
  world_.services.AddService(kFeedback, {kRunning, kPending});
  uint32_t before = world_.system.TickCount();
  EXPECT_TRUE(Stop(world_));
  uint32_t elapsed = world_.system.TickCount() - before;
  EXPECT_GT(elapsed, 30000u);
  EXPECT_LT(elapsed, 31000u);
  EXPECT_EQ(world_.system.Sleeps(), std::vector<uint32_t>(6, 5000));
  EXPECT_EQ(world_.Reports(), Strings{"1745 1 GetTickCount() - dwStartTime > dwTimeout"});
}

TEST_F(ServiceStopperTest, StopAlreadyPendingIsWaitedForInSecondStepsWithoutAControl) {
  world_.services.AddService(kFeedback, {kPending, kPending, kPending, kStopped});
  EXPECT_TRUE(Stop(world_));
  EXPECT_EQ(world_.system.Sleeps(), std::vector<uint32_t>(3, 1000));
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceStopperTest, FailuresOfTheStepsReportTheirCodes) {
  const struct {
    const char* what;
    bool added;
    void (*fail)(FakeServiceManager&);
    bool stopped;
    const char* report;
  } cases[] = {
      {"manager can't be opened at all: the service counts as absent", false,
       [](FakeServiceManager& s) { s.FailManagerOpen(5); }, true, "1101 1 "},
      {"service fails on the second opening", true, [](FakeServiceManager& s) { s.FailServiceOpen(kFeedback, 5, 1); },
       false, "1102 1 "},
      {"stop control refused", true, [](FakeServiceManager& s) { s.FailControl(kFeedback, 1052); }, false, "1741 1 "},
      {"state lost after the sleep", false,
       [](FakeServiceManager& s) {
         s.AddService(kFeedback, {kRunning, kPending});
         s.FailQuery(kFeedback, 3, 6);
       },
       true, "1743 1 QueryServiceStatusEx() failed"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TestWorld world;
    if (c.added) world.services.AddService(kFeedback, {kRunning});
    c.fail(world.services);
    EXPECT_EQ(Stop(world), c.stopped);
    EXPECT_EQ(world.Reports(), Strings{c.report});
    EXPECT_EQ(world.services.OpenHandles(), 0u);
  }
}

}  // namespace
