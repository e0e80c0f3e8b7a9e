// The process seam over the prefix's processes, and the browser refresh built on it.
#include "engine/win32/Win32Processes.h"

#include "engine/win32/WindowsApi.h"

#include <winternl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "install/BrowserRefresh.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::TestDirectory;

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

// Both listings: the enumeration and the single call told its bytes.
TEST(Win32Processes, ListsAreBoundedAndNameThisProcess) {
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

  std::vector<uint32_t> listed, two;
  ASSERT_EQ(processes.ListProcessIds(1024, listed), IProcesses::ListResult::kListed);
  EXPECT_NE(std::find(listed.begin(), listed.end(), GetCurrentProcessId()), listed.end()) << "the prefix has few";
  ASSERT_EQ(processes.ListProcessIds(8, two), IProcesses::ListResult::kListed);
  EXPECT_EQ(two.size(), 2u);
}

TEST(Win32Processes, RunningExplorerRestartsTheUtilityInItsUserContext) {
  WineTest::TempTree tree;
  std::wstring directory = TestDirectory(L"Browsers");
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
    WineTest::HostedShim world(u"Host { UtilityPath \"" + FromWide(utility.c_str()) + u"\"; }");
    BrowserRefresh(*world.shim, world.shim->GetPlatform()).AskBrowsersToRefresh();
    EXPECT_TRUE(WaitForFile(marker, content));
    EXPECT_EQ(world.host.Log().Count(), 0);
  }
  EXPECT_EQ(content, L"\"" + utility + L"\" -refreshIEElevationPolicies");
  DeleteFileW(marker.c_str());
  DeleteFileW(browser.c_str());
  DeleteFileW(utility.c_str());
}

// Handles this process holds, from the system's handle table (the handle count call answers 0 under Wine).
size_t OwnHandleCount() {
  using QueryFunction = LONG(WINAPI*)(ULONG informationClass, void* buffer, ULONG size, ULONG* returned);
  auto query = reinterpret_cast<QueryFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  constexpr ULONG kHandleInformation = 16;
  constexpr LONG kLengthMismatch = static_cast<LONG>(0xC0000004);
  std::vector<unsigned char> buffer(1 << 16);
  ULONG returned = 0;
  LONG status;
  while ((status = query(kHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), &returned)) ==
         kLengthMismatch)
    buffer.resize(buffer.size() * 2);
  if (status != 0) return 0;
  auto* table = reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(buffer.data());
  size_t own = 0;
  for (ULONG i = 0; i < table->Count; ++i) own += table->Handle[i].OwnerPid == GetCurrentProcessId();
  return own;
}

TEST(Win32Processes, ModulesOfAnotherProcessIncludeItsLibraryAndTheProcessStaysOpen) {
  WineTest::TempTree tree;
  std::wstring directory = TestDirectory(L"Modules");
  std::wstring library = directory + L"\\HeldControl-" + std::to_wstring(GetCurrentProcessId()) + L".dll";
  tree.Directory(directory);
  std::wstring built = WineTest::BinaryDirectory() + L"\\lumen_test_control.dll";
  ASSERT_TRUE(CopyFileW(built.c_str(), library.c_str(), FALSE));
  {
    WineTest::HelperProcess holder;
    ASSERT_TRUE(holder.Load(library));
    Win32Processes processes;
    std::vector<std::u16string> paths;
    size_t handlesBefore = OwnHandleCount();
    ASSERT_TRUE(processes.ListModulePaths(holder.Id(), paths));
    size_t handlesAfter = OwnHandleCount();
    EXPECT_NE(std::find(paths.begin(), paths.end(), FromWide(library.c_str())), paths.end());
    ASSERT_NE(handlesBefore, 0u);
    EXPECT_EQ(handlesAfter, handlesBefore + 1) << "the listing leaves its process open";
    std::vector<std::u16string> none;
    EXPECT_FALSE(processes.ListModulePaths(0xFFFFFFF0u, none));
  }
  DeleteFileW(library.c_str());
}

TEST(Win32Processes, AWindowNamesItsProcessWhileItExists) {
  Win32Processes processes;
  HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(processes.GetWindowProcessId(window), GetCurrentProcessId());
  DestroyWindow(window);
  EXPECT_EQ(processes.GetWindowProcessId(window), 0u);
  EXPECT_EQ(processes.GetWindowProcessId(nullptr), 0u);
}

}  // namespace
