// The process seam over the prefix's processes, the browser refresh built on it, and
// the system seam's facts.
#include "engine/win32/Win32Processes.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32System.h"
#include "host/ReferenceHost.h"
#include "install/BrowserRefresh.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::TestDirectory;

// Both listings: the enumeration and the single call told its bytes; the second is bounded.
TEST(Win32Processes, ListsAreBoundedAndNameThisProcess) {
  Win32Processes processes;
  std::vector<uint32_t> ids;
  ASSERT_TRUE(processes.EnumerateProcesses(1024, ids));
  EXPECT_NE(std::find(ids.begin(), ids.end(), GetCurrentProcessId()), ids.end());
  std::u16string image;
  EXPECT_EQ(processes.GetImageBaseName(GetCurrentProcessId(), image), 0);
  EXPECT_EQ(image, u"lumen_wine_tests.exe");

  std::vector<uint32_t> listed, two;
  ASSERT_EQ(processes.ListProcessIds(1024, listed), IProcesses::ListResult::kListed);
  EXPECT_NE(std::find(listed.begin(), listed.end(), GetCurrentProcessId()), listed.end()) << "the prefix has few";
  ASSERT_EQ(processes.ListProcessIds(8, two), IProcesses::ListResult::kListed);
  EXPECT_EQ(two.size(), 2u);

  // The system seam's own listing, with Wine's services in it too.
  std::vector<uint32_t> all;
  ASSERT_TRUE(Win32System().EnumerateProcesses(all));
  EXPECT_NE(std::find(all.begin(), all.end(), GetCurrentProcessId()), all.end());
}

TEST(Win32Processes, RunningExplorerRestartsTheUtilityInItsUserContext) {
  WineTest::TempTree tree;
  std::wstring directory = TestDirectory(L"Browsers");
  std::wstring browser = directory + L"\\iexplore.exe";
  std::wstring utility = directory + L"\\Utility\\LumenUtil_ActiveX.exe";
  ASSERT_TRUE(tree.Copy(WineTest::HelperProcess::BuiltPath(), browser));
  ASSERT_TRUE(tree.Copy(WineTest::HelperProcess::BuiltPath(), utility));
  std::wstring marker = utility + L".ran";
  std::string content;
  {
    WineTest::HelperProcess explorer;
    ASSERT_TRUE(explorer.Run(browser));
    WineTest::HostedShim world(u"Host { UtilityPath \"" + FromWide(utility.c_str()) + u"\"; }");
    BrowserRefresh(*world.shim, world.shim->GetPlatform()).AskBrowsersToRefresh();
    for (int i = 0; i < 200 && content.empty(); ++i, Sleep(50)) content = WineTest::ReadAll(marker);
    EXPECT_EQ(world.host.Log().Count(), 0);
  }
  const std::wstring expected = L"\"" + utility + L"\" -refreshIEElevationPolicies";
  EXPECT_EQ(content, std::string(reinterpret_cast<const char*>(expected.data()), expected.size() * sizeof(wchar_t)));
  DeleteFileW(marker.c_str());
}

TEST(Win32Processes, ModulesOfAnotherProcessIncludeItsLibrary) {
  WineTest::TempTree tree;
  std::wstring directory = TestDirectory(L"Modules");
  std::wstring library = directory + L"\\HeldControl-" + std::to_wstring(GetCurrentProcessId()) + L".dll";
  ASSERT_TRUE(tree.Copy(WineTest::BinaryDirectory() + L"\\lumen_test_control.dll", library));
  {
    WineTest::HelperProcess holder;
    ASSERT_TRUE(holder.Load(library));
    Win32Processes processes;
    std::vector<std::u16string> paths;
    ASSERT_TRUE(processes.ListModulePaths(holder.Id(), paths));
    EXPECT_NE(std::find(paths.begin(), paths.end(), FromWide(library.c_str())), paths.end());
    std::vector<std::u16string> none;
    EXPECT_FALSE(processes.ListModulePaths(0xFFFFFFF0u, none));
  }
}

TEST(Win32Processes, AWindowNamesItsProcessWhileItExists) {
  HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(Win32Processes().GetWindowProcessId(window), GetCurrentProcessId());
  DestroyWindow(window);
  EXPECT_EQ(Win32Processes().GetWindowProcessId(window), 0u);
}

TEST(Win32System, NarrowTextIsWidenedByTheSystemCodePage) {
  ASSERT_EQ(GetACP(), 1252u) << "the prefix's code page changed";
  EXPECT_EQ(Win32System().FromSystemCodePage("caf\xE9 \x80"), u"caf\u00E9 \u20AC");
  EXPECT_EQ(Win32System().FromSystemCodePage(""), u"");
}

}  // namespace
