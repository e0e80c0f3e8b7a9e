// The reference host's installer windows, clicked through by its unattended
// run: the real window, the real registry written inside Notify, real
// conflicting processes. The host prints each Notify call and each click.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

const std::wstring kPluginProduct = std::wstring(WineTest::ProductKeys::kProduct) + L"Plugin";

// LumenUtilHost.exe started with a settings text of the test's own, its output in a file.
class HostRun {
 public:
  HostRun(const std::wstring& directory, const std::string& settings, const std::wstring& switches) {
    static int runs = 0;
    const std::wstring stem = directory + L"run" + std::to_wstring(++runs);
    settingsPath_ = stem + L".settings";
    outputPath_ = stem + L".out";
    Write(settingsPath_, settings);
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    ScopedHandle out(CreateFileW(outputPath_.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                                 CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    std::wstring line = L"\"" + WineTest::BinaryDirectory() + L"\\LumenUtilHost.exe\" -settings \"" + settingsPath_ +
                        L"\" " + switches;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = out.get();
    startup.hStdError = out.get();
    PROCESS_INFORMATION info{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &info)) {
      process_.reset(info.hProcess);
      CloseHandle(info.hThread);
    }
  }
  ~HostRun() {
    if (process_ && WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0) TerminateProcess(process_.get(), 99);
    DeleteFileW(settingsPath_.c_str());
    DeleteFileW(outputPath_.c_str());
  }

  bool Started() const { return process_.valid(); }
  // The exit code, or 0xDEAD when the host is still running after the wait.
  DWORD Wait(DWORD milliseconds = 60000) {
    DWORD code = 0xDEAD;
    if (WaitForSingleObject(process_.get(), milliseconds) == WAIT_OBJECT_0) GetExitCodeProcess(process_.get(), &code);
    return code;
  }
  std::string Output() const { return WineTest::ReadAll(outputPath_); }
  size_t Count(const std::string& text) const {
    std::string all = Output();
    size_t n = 0;
    for (size_t at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) ++n;
    return n;
  }
  // Whether the texts occur in this order.
  bool InOrder(std::initializer_list<std::string> texts) const {
    std::string all = Output();
    size_t at = 0;
    for (const std::string& text : texts) {
      at = all.find(text, at);
      if (at == std::string::npos) return false;
      at += text.size();
    }
    return true;
  }
  // Polls the output until it holds text count times.
  bool WaitFor(const std::string& text, size_t count, DWORD milliseconds = 30000) {
    for (DWORD waited = 0; waited < milliseconds; waited += 50) {
      if (Count(text) >= count) return true;
      if (WaitForSingleObject(process_.get(), 50) == WAIT_OBJECT_0) return Count(text) >= count;
    }
    return false;
  }

 private:
  static void Write(const std::wstring& path, const std::string& text) {
    ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }

  std::wstring settingsPath_;
  std::wstring outputPath_;
  ScopedHandle process_;
};

class InstallerFlowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    WineTest::ForgetProductRegistration();
    directory_ = WineTest::TestDirectory(L"InstallerFlow\\");
    tree_.Directory(directory_);
    player_ = directory_ + L"NPLumen-" + std::to_wstring(GetCurrentProcessId()) + L".dll";
    uninstaller_ = directory_ + L"LumenUtil_Plugin.exe";
    ASSERT_TRUE(tree_.Copy(WineTest::BinaryDirectory() + L"\\lumen_test_control.dll", player_));
    ASSERT_TRUE(tree_.Copy(WineTest::HelperProcess::BuiltPath(), uninstaller_));
  }
  void TearDown() override { WineTest::ForgetProductRegistration(); }

  std::wstring Paths() const { return L"-player \"" + player_ + L"\" -uninstaller \"" + uninstaller_ + L"\""; }

  WineTest::TempTree tree_;
  std::wstring directory_;
  std::wstring player_;
  std::wstring uninstaller_;
};

constexpr char kAutoExit[] = "AutoExitDelay 200;\n";

// The pictures a run saved, by name, each with the width and height of its PNG header; the files go.
std::vector<std::string> TakePictures(const std::wstring& directory) {
  std::vector<std::string> pictures;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((directory + L"\\*.png").c_str(), &found);
  for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
    const std::wstring path = directory + L"\\" + found.cFileName;
    const std::string png = WineTest::ReadAll(path);
    auto big = [&png](size_t at) {
      return png.size() < at + 4 ? 0u
                                 : (uint32_t(uint8_t(png[at])) << 24 | uint32_t(uint8_t(png[at + 1])) << 16 |
                                    uint32_t(uint8_t(png[at + 2])) << 8 | uint8_t(png[at + 3]));
    };
    pictures.push_back(WineTest::Utf8(found.cFileName) + " " + std::to_string(big(16)) + "x" + std::to_string(big(20)));
    DeleteFileW(path.c_str());
  }
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  std::sort(pictures.begin(), pictures.end());
  return pictures;
}

TEST_F(InstallerFlowTest, InstallIsRefusedUntilTheLicenceIsTickedThenRegistersInsideNotifyAndEndsByItself) {
  const std::wstring shots = directory_ + L"shots";
  tree_.Directory(shots);
  HostRun run(directory_, kAutoExit,
              L"-install -npapi " + Paths() + L" -auto -timeout 40000 -shots \"" + shots + L"\"");
  ASSERT_TRUE(run.Started());
  EXPECT_EQ(run.Wait(), 0u) << run.Output();
  EXPECT_TRUE(run.InOrder({"PostEvent 3 6 0", "window shown 730x345", "auto: right", "auto: tick", "auto: right",
                           "Notify 6: product mask 16", "NotifyConflictsCleared 0", "Notify 2:",
                           "RegisterProduct 16: true", "Notify 0: exit code 0"}))
      << run.Output();
  // The refused click changed nothing: the conflict check came only after the tick.
  EXPECT_TRUE(run.InOrder({"auto: tick", "Notify 6"})) << run.Output();
  EXPECT_EQ(run.Count("Notify 6"), 1u) << "no conflict, so no poll";
  EXPECT_TRUE(WineTest::KeyExists(kPluginProduct));
  EXPECT_TRUE(WineTest::KeyExists(WineTest::ProductKeys::kPlugin));
  // A picture of each stage that held still: the splash before and after the tick, the bar, the end.
  const std::vector<std::string> pictures = TakePictures(shots);
  ASSERT_GE(pictures.size(), 3u) << run.Output();
  EXPECT_EQ(pictures[0], "01-installer-splash.png 730x345");
  EXPECT_EQ(pictures[1], "02-installer-splash-ticked.png 730x345");
}

TEST_F(InstallerFlowTest, AConflictingProgramHoldsTheInstallUntilItEnds) {
  const std::wstring probe = directory_ + L"lumenflowprobe.exe";
  ASSERT_TRUE(tree_.Copy(WineTest::HelperProcess::BuiltPath(), probe));
  auto running = std::make_unique<WineTest::HelperProcess>();
  ASSERT_TRUE(running->Run(probe));
  // Install source 8 looks at a kind that is not installed yet, which an optional check would skip.
  HostRun run(directory_,
              std::string(kAutoExit) + "PluginConflicts { lumenflowprobe \"Flow Probe\"; };\n"
                                       "Host { ConflictCheckIsOptional 1; };\n",
              L"-install -npapi -source 8 " + Paths() + L" -auto -timeout 60000");
  ASSERT_TRUE(run.Started());
  // Shown, then polled at least twice with the program still there.
  ASSERT_TRUE(run.WaitFor("Notify 6", 3)) << run.Output();
  EXPECT_EQ(run.Count("NotifyConflictsCleared"), 0u) << run.Output();
  EXPECT_EQ(run.Count("Notify 2"), 0u);
  HWND window = FindWindowW(L"CorvaLumenPlayerInstaller", nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(IsWindowVisible(window));
  HWND install = GetDlgItem(window, 101);
  EXPECT_TRUE(install && !IsWindowVisible(install)) << "the right button is hidden while programs are in the way";
  running.reset();
  EXPECT_EQ(run.Wait(), 0u) << run.Output();
  EXPECT_TRUE(run.InOrder({"Notify 6", "Notify 6", "NotifyConflictsCleared 0", "Notify 2:", "RegisterProduct 16: true",
                           "Notify 0: exit code 0"}))
      << run.Output();
}

TEST_F(InstallerFlowTest, ARegistrationErrorIsShownOnTheFailurePanelAndQuitEndsWithMinusOne) {
  // A control that is not there cannot register itself.
  const std::wstring missing = directory_ + L"LumenCtrl-missing.ocx";
  HostRun run(directory_, kAutoExit,
              L"-install -activex -player \"" + missing + L"\" -uninstaller \"" + uninstaller_ +
                  L"\" -auto tick,right,await=failure,left -timeout 40000");
  ASSERT_TRUE(run.Started());
  EXPECT_EQ(run.Wait(), 0xFFFFFFFFu) << run.Output();
  EXPECT_TRUE(run.InOrder({"Notify 2:", "RegisterProduct 8: false", "PostEvent 4 8 0", "auto: left",
                           "Notify 0: exit code -1"}))
      << run.Output();
  // The message the failure panel shows: the last error of the log, which the host prints at the end.
  EXPECT_TRUE(run.InOrder({"Message log", "Error 1033: " + WineTest::Utf8(missing)})) << run.Output();
  EXPECT_FALSE(WineTest::KeyExists(std::wstring(WineTest::ProductKeys::kProduct) + L"ActiveX"));
}

TEST_F(InstallerFlowTest, UninstallFromTheMaintenancePanelSkipsTheConflictsAndRemovesTheKeysInsideNotify) {
  {
    WineTest::HostedShim hosted;
    ASSERT_TRUE(hosted.shim->RegisterProduct(16, MString(std::u16string_view(FromWide(player_.c_str()))),
                                             MString(std::u16string_view(FromWide(uninstaller_.c_str()))), MString(),
                                             0));
  }
  ASSERT_TRUE(WineTest::KeyExists(kPluginProduct));
  // OS class 3 leaves the system directory's files alone.
  HostRun run(directory_, "Host { OsClass 3; UpdateService LumenFlowUpdate.exe; FeedbackService LumenFlowFeedback.exe; };",
              L"-maintain -npapi -directory \"" + directory_.substr(0, directory_.size() - 1) +
                  L"\" -auto -timeout 40000");  // no backslash before the quote, which would escape it
  ASSERT_TRUE(run.Started());
  EXPECT_EQ(run.Wait(), 0u) << run.Output();
  EXPECT_TRUE(run.InOrder({"PostEvent 3 6 1", "PostEvent 3 6 2", "window shown", "auto: uninstall", "BeginRemoval 0",
                           "Notify 3:", "RemoveProductKind 16:", "auto: done", "Notify 0: exit code 0"}))
      << run.Output();
  EXPECT_EQ(run.Count("Notify 6"), 0u) << "no conflict check from the maintenance panel";
  EXPECT_FALSE(WineTest::KeyExists(kPluginProduct));
  EXPECT_FALSE(WineTest::KeyExists(WineTest::ProductKeys::kPlugin));
}

TEST_F(InstallerFlowTest, InstallSource12RunsTheUpdateHiddenWithChoiceZero) {
  HostRun run(directory_, "Host { UpdateMessage \"A newer player\"; AutoUpdateMode 2; };",
              L"-update -npapi -source 12 -auto -timeout 20000");
  ASSERT_TRUE(run.Started());
  EXPECT_EQ(run.Wait(), 0u) << run.Output();
  EXPECT_TRUE(run.InOrder({"PostEvent 3 6 3", "SetAutoUpdateChoice 0", "Notify 4: the update is asked for",
                           "Notify 0: exit code 0"}))
      << run.Output();
  EXPECT_EQ(run.Count("window shown"), 0u) << run.Output();
  EXPECT_EQ(run.Count("SetAutoUpdateChoice 2"), 0u) << "source 12 forces the choice";
}

}  // namespace
