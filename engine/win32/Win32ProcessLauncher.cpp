#include "engine/win32/Win32ProcessLauncher.h"

#include "engine/win32/WindowsApi.h"

#include <shellapi.h>

#include <string>

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

namespace SASM {

int32_t Win32ProcessLauncher::RunAndWait(std::u16string_view commandLine, uint32_t creationFlags,
                                         uint32_t timeoutMs, uint32_t& exitCode) {
  std::wstring command = ToWide(commandLine);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, creationFlags, nullptr, nullptr, &startup,
                      &started))
    return static_cast<int32_t>(GetLastError());
  ScopedHandle thread(started.hThread);
  ScopedHandle process(started.hProcess);
  WaitForSingleObject(process.get(), timeoutMs);
  // Read whatever the wait gave: after a timeout this is the still-active code.
  DWORD code = ProcessWait::kStillActive;
  if (GetExitCodeProcess(process.get(), &code)) exitCode = code;
  return ERROR_SUCCESS;
}

bool Win32ProcessLauncher::ShellExecuteAndWait(std::u16string_view file, std::u16string_view parameters) {
  std::wstring path = ToWide(file), arguments = ToWide(parameters);
  SHELLEXECUTEINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOCLOSEPROCESS;
  info.hwnd = GetForegroundWindow();
  info.lpFile = path.c_str();
  info.lpParameters = arguments.c_str();
  info.nShow = SW_SHOWNORMAL;
  if (!ShellExecuteExW(&info)) return false;
  ScopedHandle process(info.hProcess);
  if (process) WaitForSingleObject(process.get(), INFINITE);
  return true;
}

}  // namespace SASM
