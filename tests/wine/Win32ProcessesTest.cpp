// The process seam over the prefix's processes, and the browser refresh built on it.
#include "engine/win32/Win32Processes.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "install/BrowserRefresh.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

std::wstring TempDirectory(const wchar_t* name) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  return std::wstring(temp) + L"LumenUtilTests\\" + name;
}

// Waits for a file to appear and gives its UTF-16 content.
bool WaitForFile(const std::wstring& path, std::wstring& content) {
  for (int i = 0; i < 200; ++i) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      wchar_t buffer[1024] = {};
      DWORD got = 0;
      ReadFile(file, buffer, sizeof(buffer) - sizeof(wchar_t), &got, nullptr);
      CloseHandle(file);
      content.assign(buffer, got / sizeof(wchar_t));
      if (!content.empty()) return true;
    }
    Sleep(50);
  }
  return false;
}

TEST(Win32Processes, ListIsBoundedAndNamesThisProcess) {
  Win32Processes processes;
  std::vector<uint32_t> ids;
  ASSERT_TRUE(processes.EnumerateProcesses(1024, ids));
  EXPECT_NE(std::find(ids.begin(), ids.end(), GetCurrentProcessId()), ids.end());
  std::vector<uint32_t> one;
  ASSERT_TRUE(processes.EnumerateProcesses(1, one));
  EXPECT_EQ(one.size(), 1u);
  std::u16string image;
  EXPECT_EQ(processes.GetImageBaseName(GetCurrentProcessId(), image), 0);
  EXPECT_EQ(image, u"lumen_wine_tests.exe");
  EXPECT_NE(processes.GetImageBaseName(0xFFFFFFF0u, image), 0);
}

TEST(Win32Processes, RunningExplorerRestartsTheUtilityInItsUserContext) {
  WineTest::TempTree tree;
  std::wstring directory = TempDirectory(L"Browsers");
  std::wstring browser = directory + L"\\iexplore.exe";
  std::wstring utility = directory + L"\\Utility\\LumenUtil_ActiveX.exe";
  tree.Directory(directory + L"\\Utility");
  ASSERT_TRUE(CopyFileW(WineTest::HelperProcess::BuiltPath().c_str(), browser.c_str(), FALSE));
  ASSERT_TRUE(CopyFileW(WineTest::HelperProcess::BuiltPath().c_str(), utility.c_str(), FALSE));
  std::wstring marker = utility + L".ran";
  std::wstring content;
  {
    WineTest::HelperProcess explorer;
    ASSERT_TRUE(explorer.Run(browser));
    std::u16string settings = u"Host { UtilityPath \"" + FromWide(utility.c_str()) + u"\"; }";
    ReferenceHost host(HostOptions{}, MString(std::u16string_view(settings)));
    std::unique_ptr<LumenBrokerShim> shim(StartShim(&host, Win32Platform()));
    host.shim = shim.get();
    BrowserRefresh(*shim, shim->GetPlatform()).AskBrowsersToRefresh();
    EXPECT_TRUE(WaitForFile(marker, content));
    EXPECT_EQ(host.Log().Count(), 0);
    host.shim = nullptr;
  }
  EXPECT_EQ(content, L"\"" + utility + L"\" -refreshIEElevationPolicies");
  DeleteFileW(marker.c_str());
  DeleteFileW(browser.c_str());
  DeleteFileW(utility.c_str());
}

}  // namespace
