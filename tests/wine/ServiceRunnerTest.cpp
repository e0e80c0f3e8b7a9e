// The service executables' switches through the real process launcher: a
// stand-in records each run and exits with the code a test chose.
#include "install/ServiceRunner.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::ReadAll;

class ServiceRunnerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = WineTest::TestDirectory(L"Runner");
    tree_.Directory(directory_);
    standIn_ = directory_ + L"\\LumenPlayerUpdateService.exe";
    ASSERT_TRUE(CopyFileW((WineTest::BinaryDirectory() + L"\\lumen_service_standin.exe").c_str(), standIn_.c_str(),
                          FALSE));
    host_ = std::make_unique<ReferenceHost>(HostOptions(), MString(u""));
  }
  void TearDown() override {
    for (const wchar_t* suffix : {L"", L".switches", L".exitcode"}) DeleteFileW((standIn_ + suffix).c_str());
  }

  ServiceRunner Runner() {
    return ServiceRunner(ServiceRunner::Service::Update, MString(FromWide(standIn_.c_str())), *host_,
                         Win32Platform());
  }
  void ChooseExitCode(const char* code) {
    HANDLE file = CreateFileW((standIn_ + L".exitcode").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, code, static_cast<DWORD>(strlen(code)), &written, nullptr);
    CloseHandle(file);
  }
  std::string Switches() const { return ReadAll(standIn_ + L".switches"); }

  WineTest::TempTree tree_;
  std::wstring directory_, standIn_;
  std::unique_ptr<ReferenceHost> host_;
};

TEST_F(ServiceRunnerTest, RunIsWaitedForAndJudgedByItsExitCode) {
  EXPECT_TRUE(Runner().RunUninstallCommand());
  EXPECT_EQ(Switches(), "-uninstall\n");
  ChooseExitCode("4");
  EXPECT_FALSE(Runner().RunAnalyticsCommand());
  EXPECT_EQ(Switches(), "-uninstall\n-enableAnalytics\n");
  EXPECT_EQ(host_->Log().Count(), 0);
}

TEST_F(ServiceRunnerTest, NotifyModeRunsBothSwitches) {
  EXPECT_TRUE(Runner().SetUpdateMode(1));
  EXPECT_EQ(Switches(), "-uninstall\n-setNotifyAutoUpdate\n");
}

TEST_F(ServiceRunnerTest, MissingExecutableReportsItsStartFailure) {
  std::wstring absent = directory_ + L"\\FeedbackSvc.exe";
  ServiceRunner runner(ServiceRunner::Service::Feedback, MString(FromWide(absent.c_str())), *host_, Win32Platform());
  EXPECT_FALSE(runner.RunUninstallCommand());
  EXPECT_FALSE(runner.RunServiceCommandUnjudged(u"-uninstall"));
  ASSERT_EQ(host_->Log().Count(), 2);
  EXPECT_EQ(host_->Log().Entries()[0].code, 1118);
  EXPECT_EQ(host_->Log().Entries()[1].code, 1739);
  EXPECT_EQ(host_->Log().Entries()[1].text.ToUtf8(), "2");  // the file is missing, in decimal
}

}  // namespace
