// Without the enterprise services (Wine, older systems) nobody has an
// identity, every protection query fails open, and the worker still comes
// and goes cleanly.
#include "broker/win32/Win32EnterpriseProtectionPlatform.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/BrokerFileProtectionInfo.h"
#include "broker/EnterpriseIdentityList.h"
#include "broker/Task.h"
#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

std::wstring TempFile(const wchar_t* name) { return WineTest::TestDirectory(L"Protection\\") + name; }
class Win32EnterpriseProtectionPlatformTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (platform.CanGetEnterpriseIds() || platform.CanProtectToIdentity()) {
      GTEST_SKIP() << "this system has the enterprise services";
    }
  }
  void TearDown() override { StopTask(); }

  Win32EnterpriseProtectionPlatform platform;
};

// Signals an event from the worker.
class SignalJob : public TaskJob {
 public:
  SignalJob() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  ~SignalJob() { CloseHandle(event_); }
  void Run() override {
    thread_ = GetCurrentThreadId();
    SetEvent(event_);
  }
  HANDLE event_;
  DWORD thread_ = 0;
};

}  // namespace

TEST_F(Win32EnterpriseProtectionPlatformTest, IdentityListsAreEmptyAndNothingCanBeProtected) {
  EXPECT_TRUE(EnterpriseIdentityList(platform, EnterpriseIdentityList::kServerProcess).IsEmpty());
  EXPECT_TRUE(EnterpriseIdentityList(platform, EnterpriseIdentityList::kCallingClient).IsEmpty());
  EXPECT_LT(platform.ProtectToIdentity(u"C:\\x.txt", u"corp.example"), 0);
}

TEST_F(Win32EnterpriseProtectionPlatformTest, AMissingFileIsUnprotectedWithoutAWorker) {
  StopTask();
  BrokerFileProtectionInfo info(platform, FromWide(TempFile(L"missing.txt").c_str()).c_str());
  EXPECT_FALSE(info.IsProtected());
  EXPECT_EQ(info.Status(), BrokerFileProtectionInfo::kFailed);
  EXPECT_EQ(CurrentTask(), nullptr);
}

TEST_F(Win32EnterpriseProtectionPlatformTest, AnExistingFilesQueryFailsOpenAndReturns) {
  WineTest::TempTree tree;
  std::wstring path = TempFile(L"present.txt");
  tree.File(path, "x");
  BrokerFileProtectionInfo info(platform, FromWide(path.c_str()).c_str());
  EXPECT_FALSE(info.IsProtected());
  EXPECT_EQ(info.Status(), BrokerFileProtectionInfo::kFailed);
  uint32_t length = 7;
  EXPECT_EQ(info.GetIdentity(length), nullptr);
  EXPECT_EQ(length, 0u);
  EXPECT_NE(CurrentTask(), nullptr);
}

TEST_F(Win32EnterpriseProtectionPlatformTest, TheWorkerRunsJobsOnItsOwnThreadAndStopsAtTheEnd) {
  Task* task = GetTask();
  ASSERT_NE(task, nullptr);
  SignalJob job;
  ASSERT_TRUE(task->Post(&job));
  ASSERT_EQ(WaitForSingleObject(job.event_, 5000), WAIT_OBJECT_0);
  EXPECT_NE(job.thread_, GetCurrentThreadId());
  StopTask();
  EXPECT_EQ(CurrentTask(), nullptr);
  StopTask();
}
