#include "delivery/win32/Win32AddOnProcesses.h"

#include <shellapi.h>
#include <winver.h>

#include <string>
#include <vector>

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

std::string Narrow(const std::wstring& wide) {
  const int size = WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return std::string();
  std::string narrow(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, narrow.data(), size, nullptr, nullptr);
  narrow.resize(static_cast<size_t>(size - 1));
  return narrow;
}

}  // namespace

uint32_t Win32AddOnProcesses::Start(std::u16string_view path, const char16_t* parameters) {
  const std::wstring application = ToWide(path);
  PROCESS_INFORMATION process{};
  BOOL started;
  if (auto createProcessW = kernel32_.CreateProcessW()) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);  // 104
    // The command line must be writable.
    std::wstring commandLine = parameters ? ToWide(parameters) : std::wstring();
    started = createProcessW(application.c_str(), parameters ? commandLine.data() : nullptr, nullptr, nullptr, FALSE,
                             0, nullptr, nullptr, &startup, &process);
  } else {
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    const std::string narrowApplication = Narrow(application);
    std::string commandLine = parameters ? Narrow(ToWide(parameters)) : std::string();
    started = CreateProcessA(narrowApplication.c_str(), parameters ? commandLine.data() : nullptr, nullptr, nullptr,
                             FALSE, 0, nullptr, nullptr, &startup, &process);
  }
  if (!started) return GetLastError();
  ScopedHandle processHandle(process.hProcess);
  ScopedHandle threadHandle(process.hThread);
  // The player's call returns only once the product can take input.
  WaitForInputIdle(process.hProcess, INFINITE);
  return 0;
}

bool Win32AddOnProcesses::StartElevated(std::u16string_view path) {
  auto shellExecuteExW = shell32_.ShellExecuteExW();
  if (!shellExecuteExW) return false;
  const std::wstring file = ToWide(path);
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);  // 112
  info.hwnd = GetForegroundWindow();
  info.lpVerb = L"open";
  info.lpFile = file.c_str();
  info.nShow = SW_SHOWNORMAL;
  return shellExecuteExW(&info) != FALSE;
}

bool Win32AddOnProcesses::ReadFileVersion(std::u16string_view path, uint32_t& mostSignificant,
                                          uint32_t& leastSignificant) {
  const std::wstring file = ToWide(path);
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
  if (size == 0) return false;
  std::vector<uint8_t> block(size);
  if (!GetFileVersionInfoW(file.c_str(), 0, size, block.data())) return false;
  void* fixed = nullptr;
  UINT fixedSize = 0;
  if (!VerQueryValueA(block.data(), "\\", &fixed, &fixedSize) || !fixed || fixedSize < sizeof(VS_FIXEDFILEINFO))
    return false;
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(fixed);
  mostSignificant = info->dwFileVersionMS;
  leastSignificant = info->dwFileVersionLS;
  return true;
}

bool Win32AddOnProcesses::MutexExists(const std::string& name) {
  ScopedHandle mutex(CreateMutexA(nullptr, TRUE, name.c_str()));
  return GetLastError() == ERROR_ALREADY_EXISTS;
}

}  // namespace SASM
