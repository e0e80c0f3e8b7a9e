// Commands that are waited for, through the real process and shell functions.
#include "engine/win32/Win32ProcessLauncher.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

class Win32ProcessLauncherTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = WineTest::TestDirectory(L"Launcher");
    tree_.Directory(directory_);
    standIn_ = directory_ + L"\\standin.exe";
    ASSERT_TRUE(CopyFileW((WineTest::BinaryDirectory() + L"\\lumen_service_standin.exe").c_str(), standIn_.c_str(),
                          FALSE));
  }
  void TearDown() override {
    for (const wchar_t* suffix : {L"", L".switches", L".exitcode"}) DeleteFileW((standIn_ + suffix).c_str());
  }
  bool Recorded() const { return GetFileAttributesW((standIn_ + L".switches").c_str()) != INVALID_FILE_ATTRIBUTES; }

  WineTest::TempTree tree_;
  std::wstring directory_, standIn_;
};

TEST_F(Win32ProcessLauncherTest, RunReturnsTheExitCodeAfterTheProcessEnded) {
  HANDLE file = CreateFileW((standIn_ + L".exitcode").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, "42", 2, &written, nullptr);
  CloseHandle(file);
  uint32_t exitCode = 0;
  Win32ProcessLauncher launcher;
  EXPECT_EQ(launcher.RunAndWait(FromWide(standIn_.c_str()) + u" -x", 0xC000000, 600000, exitCode), 0);
  EXPECT_EQ(exitCode, 42u);
  EXPECT_TRUE(Recorded());
}

TEST_F(Win32ProcessLauncherTest, ShellRunIsWaitedFor) {
  Win32ProcessLauncher launcher;
  EXPECT_TRUE(launcher.ShellExecuteAndWait(FromWide(standIn_.c_str()), u"/q /X {0}"));
  EXPECT_TRUE(Recorded());
  // A missing file isn't tried here: the shell shows its own error, which nobody would answer.
}

}  // namespace
