// The service executables' switches through the real process launcher: a
// stand-in records each run and exits with the code a test chose.
#include "install/ServiceRunner.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32ProcessLauncher.h"
#include "host/ReferenceHost.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

class ServiceRunnerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    tree_.Directory(directory_);
    ASSERT_TRUE(CopyFileW((WineTest::BinaryDirectory() + L"\\lumen_service_standin.exe").c_str(), standIn_.c_str(),
                          FALSE));
  }
  void TearDown() override {
    for (const wchar_t* suffix : {L"", L".switches"}) DeleteFileW((standIn_ + suffix).c_str());
  }

  ServiceRunner Runner(const std::wstring& path) {
    return ServiceRunner(ServiceRunner::Service::Update, MString(FromWide(path.c_str())), host_, Win32Platform());
  }
  std::string Switches() const { return WineTest::ReadAll(standIn_ + L".switches"); }

  WineTest::TempTree tree_;
  std::wstring directory_ = WineTest::TestDirectory(L"Runner");
  std::wstring standIn_ = directory_ + L"\\LumenPlayerUpdateService.exe";
  ReferenceHost host_{HostOptions(), MString(u"")};
};

TEST_F(ServiceRunnerTest, RunIsWaitedForAndJudgedByItsExitCode) {
  EXPECT_TRUE(Runner(standIn_).RunUninstallCommand());
  EXPECT_EQ(Switches(), "-uninstall\n");
  tree_.File(standIn_ + L".exitcode", "4");
  EXPECT_FALSE(Runner(standIn_).RunAnalyticsCommand());
  EXPECT_EQ(Switches(), "-uninstall\n-enableAnalytics\n");
  EXPECT_EQ(host_.Log().Count(), 0);
  // The shell's run is waited for too.
  EXPECT_TRUE(Win32ProcessLauncher().ShellExecuteAndWait(FromWide(standIn_.c_str()), u"/q /X {0}"));
  EXPECT_EQ(Switches(), "-uninstall\n-enableAnalytics\n/q /X {0}\n");
}

TEST_F(ServiceRunnerTest, MissingExecutableReportsItsStartFailure) {
  ServiceRunner runner = Runner(directory_ + L"\\FeedbackSvc.exe");
  EXPECT_FALSE(runner.RunUninstallCommand());
  EXPECT_FALSE(runner.RunServiceCommandUnjudged(u"-uninstall"));
  ASSERT_EQ(host_.Log().Count(), 2);
  EXPECT_EQ(host_.Log().Entries()[0].code, 1118);
  EXPECT_EQ(host_.Log().Entries()[1].code, 1739);
  EXPECT_EQ(host_.Log().Entries()[1].text.ToUtf8(), "2");  // the file is missing, in decimal
}

}  // namespace
