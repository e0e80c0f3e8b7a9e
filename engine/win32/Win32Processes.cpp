#include "engine/win32/Win32Processes.h"

#include "engine/win32/WindowsApi.h"

#include <psapi.h>

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

int32_t LastError() { return static_cast<int32_t>(GetLastError()); }

// Detached, and with the system's default error mode rather than ours.
constexpr DWORD kDetachedCreation = DETACHED_PROCESS | CREATE_DEFAULT_ERROR_MODE;

}  // namespace

bool Win32Processes::EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) {
  std::vector<DWORD> table(maxCount);
  DWORD bytes = 0;
  if (!K32EnumProcesses(table.data(), static_cast<DWORD>(table.size() * sizeof(DWORD)), &bytes)) return false;
  ids.assign(table.begin(), table.begin() + bytes / sizeof(DWORD));
  return true;
}

int32_t Win32Processes::GetImageBaseName(uint32_t processId, std::u16string& name) {
  ScopedHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
  if (!process) return LastError();
  wchar_t buffer[MAX_PATH];
  DWORD n = K32GetModuleBaseNameW(process.get(), nullptr, buffer, MAX_PATH);
  if (n == 0) return LastError();
  name = FromWide(buffer, n);
  return ERROR_SUCCESS;
}

int32_t Win32Processes::StartAsUserOf(uint32_t processId, std::u16string_view commandLine) {
  ScopedHandle process(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, processId));
  if (!process) return LastError();
  HANDLE rawToken = nullptr;
  if (!OpenProcessToken(process.get(), TOKEN_DUPLICATE | TOKEN_QUERY, &rawToken)) return LastError();
  ScopedHandle token(rawToken);
  HANDLE rawPrimary = nullptr;
  if (!DuplicateTokenEx(token.get(), MAXIMUM_ALLOWED, nullptr, SecurityImpersonation, TokenPrimary, &rawPrimary))
    return LastError();
  ScopedHandle primary(rawPrimary);
  std::wstring command = ToWide(commandLine);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started = {};
  if (!CreateProcessAsUserW(primary.get(), nullptr, command.data(), nullptr, nullptr, FALSE, kDetachedCreation,
                            nullptr, nullptr, &startup, &started))
    return LastError();
  // Not waited for: the handles go at once.
  ScopedHandle thread(started.hThread);
  ScopedHandle child(started.hProcess);
  return ERROR_SUCCESS;
}

}  // namespace SASM
