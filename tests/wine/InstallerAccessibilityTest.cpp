// The installer window as a screen reader sees it: the reference host shows
// the install splash, and a process of its own reads every native child's
// accessible object (name, role, state, place on the screen).
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "engine/win32/ScopedHandle.h"
#include "tests/wine/WineTestSupport.h"
#include "ui/win32/Win32WindowHost.h"

using namespace SASM;

namespace {

struct Line {
  std::string name;
  long role = 0;
  long state = 0;
  RECT place{};
};

class InstallerAccessibilityTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = WineTest::TestDirectory(L"InstallerAccessibility\\");
    tree_.Directory(directory_);
    // The window stays until the test closes it; the bound only ends a stuck run.
    std::wstring line = L"\"" + WineTest::BinaryDirectory() + L"\\LumenUtilHost.exe\" -install -npapi -player \"" +
                        directory_ + L"NPLumenReader.dll\" -uninstaller \"" + directory_ +
                        L"LumenUtil_Plugin.exe\" -auto end -timeout 90000";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info));
    host_.reset(info.hProcess);
    CloseHandle(info.hThread);
  }
  void TearDown() override {
    if (host_ && WaitForSingleObject(host_.get(), 0) != WAIT_OBJECT_0) TerminateProcess(host_.get(), 99);
  }

  // The visible installer window with at least count visible children, or null after the wait.
  static HWND WaitForWindow(size_t count) {
    for (int i = 0; i < 400; ++i) {
      HWND window = FindWindowW(Win32WindowHost::kClassName, nullptr);
      if (window && IsWindowVisible(window) && Children(window).size() >= count) return window;
      Sleep(50);
    }
    return nullptr;
  }
  static std::vector<HWND> Children(HWND window) {
    std::vector<HWND> children;
    EnumChildWindows(
        window,
        [](HWND child, LPARAM list) {
          if (IsWindowVisible(child)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&children));
    return children;
  }

  // One line of the reader per child, in the children's order.
  std::vector<Line> Read(const std::vector<HWND>& children) {
    const std::wstring outPath = directory_ + L"reader.out";
    std::wstring command = L"\"" + WineTest::BinaryDirectory() + L"\\lumen_accessibility_client.exe\"";
    for (HWND child : children) command += L" " + std::to_wstring(reinterpret_cast<uintptr_t>(child));
    {
      SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
      ScopedHandle out(CreateFileW(outPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
      EXPECT_EQ(WineTest::RunToEnd(command, 30000, out.get()), 0u);
    }
    std::vector<Line> lines;
    std::istringstream text(WineTest::ReadAll(outPath));
    std::string row;
    while (std::getline(text, row)) {
      if (!row.empty() && row.back() == '\r') row.pop_back();
      Line line;
      std::istringstream fields(row);
      std::string role, state, place;
      std::getline(fields, line.name, '\t');
      std::getline(fields, role, '\t');
      std::getline(fields, state, '\t');
      std::getline(fields, place);
      line.role = std::atol(role.c_str());
      line.state = std::atol(state.c_str());
      std::sscanf(place.c_str(), "%ld,%ld,%ld,%ld", &line.place.left, &line.place.top, &line.place.right,
                  &line.place.bottom);
      line.place.right += line.place.left;
      line.place.bottom += line.place.top;
      lines.push_back(line);
    }
    DeleteFileW(outPath.c_str());
    return lines;
  }
  static const Line* Named(const std::vector<Line>& lines, const std::string& name) {
    for (const Line& line : lines)
      if (line.name == name) return &line;
    return nullptr;
  }

  WineTest::TempTree tree_;
  std::wstring directory_;
  ScopedHandle host_;
};

TEST_F(InstallerAccessibilityTest, AnotherProcessReadsTheSplashControlsAndTheTickOfTheLicenceBox) {
  HWND window = WaitForWindow(3);
  ASSERT_NE(window, nullptr) << "no installer window with its controls";
  const std::vector<HWND> children = Children(window);
  std::vector<Line> lines = Read(children);
  ASSERT_EQ(lines.size(), children.size());
  // Every child is where its native window is on the screen.
  for (size_t i = 0; i < children.size(); ++i) {
    RECT r{};
    GetWindowRect(children[i], &r);
    EXPECT_TRUE(EqualRect(&r, &lines[i].place)) << lines[i].name;
  }
  const std::string licence =
      " I have read and agree to the terms of the Lumen Player License Agreement.";
  const Line* quit = Named(lines, "QUIT");
  const Line* install = Named(lines, "INSTALL");
  const Line* box = Named(lines, licence);
  ASSERT_TRUE(quit && install && box);
  EXPECT_EQ(quit->role, 43);
  EXPECT_EQ(install->role, 43);
  EXPECT_EQ(quit->state, 1048576);
  EXPECT_EQ(box->role, 44);
  EXPECT_EQ(box->state, 1048576);
  EXPECT_EQ(lines.size(), 3u) << "the two buttons of the bar and the licence box";
  // INSTALL lies on the bar's right, QUIT on its left.
  EXPECT_LT(quit->place.left, install->place.left);

  // A click on the box, as a person makes it; the reader then sees it checked.
  POINT centre{(box->place.left + box->place.right) / 2, (box->place.top + box->place.bottom) / 2};
  ScreenToClient(window, &centre);
  const LPARAM at = MAKELPARAM(centre.x, centre.y);
  PostMessageW(window, WM_MOUSEMOVE, 0, at);
  PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at);
  PostMessageW(window, WM_LBUTTONUP, 0, at);
  long state = 0;
  for (int i = 0; i < 100 && !(state & 16); ++i) {
    Sleep(100);
    std::vector<Line> again = Read({children});
    if (const Line* ticked = Named(again, licence)) state = ticked->state;
  }
  EXPECT_EQ(state & 16, 16) << "the box reads as checked once ticked";

  PostMessageW(window, WM_CLOSE, 0, 0);
  ASSERT_EQ(WaitForSingleObject(host_.get(), 30000), WAIT_OBJECT_0);
  DWORD code = 0;
  GetExitCodeProcess(host_.get(), &code);
  EXPECT_EQ(code, 1039u) << "the close box leaves the installer with 1039";
}

}  // namespace
