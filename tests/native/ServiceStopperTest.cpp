#include "removal/ServiceStopper.h"

#include <gtest/gtest.h>

#include "install/ServiceRunner.h"
#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kFeedback[] = u"CorvaLumenPlayerFeedbackSvc";
constexpr uint32_t kRunning = ServiceState::kRunning;
constexpr uint32_t kPending = ServiceState::kStopPending;
constexpr uint32_t kStopped = ServiceState::kStopped;

class ServiceStopperTest : public ::testing::Test {
 protected:
  bool Stop() {
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"C:\\Lumen\\FeedbackSvc.exe"), *world_.host,
                         world_.GetPlatform());
    uint32_t before = world_.system.TickCount();
    bool stopped = ServiceStopper(*world_.host, world_.GetPlatform()).StopService(runner);
    elapsed_ = world_.system.TickCount() - before;
    return stopped;
  }

  RemovalTestWorld world_;
  uint32_t elapsed_ = 0;
};

TEST_F(ServiceStopperTest, AbsentServiceIsTrueAndSilent) {
  EXPECT_TRUE(Stop());
  EXPECT_TRUE(world_.Reports().empty());
  EXPECT_TRUE(world_.system.Sleeps().empty());
}

TEST_F(ServiceStopperTest, StoppedServiceIsLeftAloneWithoutAMessage) {
  world_.services.AddService(kFeedback, {kStopped});
  EXPECT_TRUE(Stop());
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
  EXPECT_EQ(world_.services.OpenHandles(), 0u);
}

TEST_F(ServiceStopperTest, ServiceStoppedAtTheFirstCheckReportsInformationOnly) {
  world_.services.AddService(kFeedback, {kRunning, kStopped});
  EXPECT_TRUE(Stop());
  EXPECT_EQ(world_.services.Stops(), std::vector<std::u16string>{kFeedback});
  EXPECT_EQ(world_.Reports(), std::vector<std::string>{"35 0 "});
  EXPECT_TRUE(world_.system.Sleeps().empty());
  EXPECT_EQ(world_.services.OpenHandles(), 0u);
}

TEST_F(ServiceStopperTest, ServiceStoppingDuringTheFiveSecondSleepReportsBoth) {
  world_.services.AddService(kFeedback, {kRunning, kPending, kStopped});
  EXPECT_TRUE(Stop());
  EXPECT_EQ(world_.system.Sleeps(), std::vector<uint32_t>{5000});
  EXPECT_EQ(world_.Reports(),
            (std::vector<std::string>{"1744 1 serviceProc.dwCurrentState == SERVICE_STOPPED", "35 0 "}));
}

TEST_F(ServiceStopperTest, ServiceThatNeverStopsTimesOutAfterThirtySecondsAndStillSucceeds) {
  world_.system.SetTickStep(1);  // each reading of the clock costs a millisecond
  world_.services.AddService(kFeedback, {kRunning, kPending});
  EXPECT_TRUE(Stop());
  EXPECT_GT(elapsed_, 30000u);
  EXPECT_LT(elapsed_, 31000u);
  EXPECT_EQ(world_.system.Sleeps(), std::vector<uint32_t>(6, 5000));
  EXPECT_EQ(world_.Reports(), std::vector<std::string>{"1745 1 GetTickCount() - dwStartTime > dwTimeout"});
}

TEST_F(ServiceStopperTest, StopAlreadyPendingIsWaitedForInSecondStepsWithoutAControl) {
  world_.services.AddService(kFeedback, {kPending, kPending, kPending, kStopped});
  EXPECT_TRUE(Stop());
  EXPECT_EQ(world_.system.Sleeps(), std::vector<uint32_t>(3, 1000));
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceStopperTest, StopPendingForeverGivesUpSilentlyPastTheBudget) {
  world_.services.AddService(kFeedback, {kPending});
  EXPECT_TRUE(Stop());
  EXPECT_EQ(world_.system.Sleeps().size(), 31u);
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
}

TEST_F(ServiceStopperTest, FailuresOfTheStepsReportTheirCodes) {
  {
    SCOPED_TRACE("manager can't be opened at all: the service counts as absent");
    RemovalTestWorld world;
    world.services.FailManagerOpen(5);
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world.host, world.GetPlatform());
    EXPECT_TRUE(ServiceStopper(*world.host, world.GetPlatform()).StopService(runner));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{"1101 1 "});
  }
  {
    SCOPED_TRACE("manager fails on the second opening");
    RemovalTestWorld world;
    world.services.AddService(kFeedback, {kRunning});
    world.services.FailManagerOpen(5, 1);
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world.host, world.GetPlatform());
    EXPECT_FALSE(ServiceStopper(*world.host, world.GetPlatform()).StopService(runner));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{"1101 1 "});
  }
  {
    SCOPED_TRACE("service fails on the second opening");
    RemovalTestWorld world;
    world.services.AddService(kFeedback, {kRunning});
    world.services.FailServiceOpen(kFeedback, 5, 1);
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world.host, world.GetPlatform());
    EXPECT_FALSE(ServiceStopper(*world.host, world.GetPlatform()).StopService(runner));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{"1102 1 "});
    EXPECT_EQ(world.services.OpenHandles(), 0u);
  }
  {
    SCOPED_TRACE("stop control refused");
    RemovalTestWorld world;
    world.services.AddService(kFeedback, {kRunning});
    world.services.FailControl(kFeedback, 1052);
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world.host, world.GetPlatform());
    EXPECT_FALSE(ServiceStopper(*world.host, world.GetPlatform()).StopService(runner));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{"1741 1 "});
  }
  {
    SCOPED_TRACE("state lost after the sleep");
    RemovalTestWorld world;
    world.services.AddService(kFeedback, {kRunning, kPending});
    world.services.FailQuery(kFeedback, 3, 6);
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"f.exe"), *world.host, world.GetPlatform());
    EXPECT_TRUE(ServiceStopper(*world.host, world.GetPlatform()).StopService(runner));
    EXPECT_EQ(world.Reports(), std::vector<std::string>{"1743 1 QueryServiceStatusEx() failed"});
  }
}

TEST_F(ServiceStopperTest, UnreadableFirstStateCountsAsStopped) {
  world_.services.AddService(kFeedback, {kRunning});
  world_.services.FailQuery(kFeedback, 1, 6);
  EXPECT_TRUE(Stop());
  EXPECT_TRUE(world_.services.Stops().empty());
  EXPECT_TRUE(world_.Reports().empty());
}

}  // namespace
