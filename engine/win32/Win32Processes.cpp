#include "engine/win32/Win32Processes.h"

#include "engine/win32/WindowsApi.h"

#include <algorithm>

#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/PsapiDllHelper.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"

namespace SASM {
namespace {

int32_t LastError() { return static_cast<int32_t>(GetLastError()); }

// Detached, and with the system's default error mode rather than ours.
constexpr DWORD kDetachedCreation = DETACHED_PROCESS | CREATE_DEFAULT_ERROR_MODE;

constexpr DWORD kQueryAndRead = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ;
// The listing table is always this large, whatever size the call is told.
constexpr size_t kIdTableEntries = 4096 / sizeof(DWORD);
constexpr size_t kModuleTableEntries = 8192 / sizeof(HMODULE);

}  // namespace

Win32Processes::Win32Processes() = default;
Win32Processes::~Win32Processes() = default;

PsapiDllHelper& Win32Processes::Psapi() {
  if (!psapi_) psapi_ = std::make_unique<PsapiDllHelper>();
  return *psapi_;
}

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

IProcesses::ListResult Win32Processes::ListProcessIds(uint32_t tableBytes, std::vector<uint32_t>& ids) {
  wchar_t directory[MAX_PATH];
  UINT length = GetSystemDirectoryW(directory, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return ListResult::kFailed;
  auto enumerate = Psapi().EnumProcesses();
  if (!enumerate) return ListResult::kNoFunction;
  std::vector<DWORD> table(kIdTableEntries, 0);
  DWORD bytes = std::min<DWORD>(tableBytes, static_cast<DWORD>(table.size() * sizeof(DWORD)));
  DWORD returned = 0;
  if (!enumerate(table.data(), bytes, &returned)) return ListResult::kFailed;
  ids.assign(table.begin(), table.begin() + std::min(returned, bytes) / sizeof(DWORD));
  return ListResult::kListed;
}

IProcesses::IdentitySource Win32Processes::ReadIdentity(uint32_t processId, std::u16string& name,
                                                        std::u16string& path) {
  ScopedHandle process(OpenProcess(kQueryAndRead, FALSE, processId));
  if (!process) return IdentitySource::kNotOpened;
  PsapiDllHelper& psapi = Psapi();
  auto enumerate = psapi.EnumProcessModules();
  auto baseName = psapi.GetModuleBaseNameW();
  auto fileName = psapi.GetModuleFileNameExW();
  HMODULE first = nullptr;
  DWORD needed = 0;
  if (enumerate && baseName && fileName && enumerate(process.get(), &first, sizeof(first), &needed)) {
    wchar_t text[MAX_PATH] = {};
    name = FromWide(text, baseName(process.get(), first, text, MAX_PATH));
    path = FromWide(text, fileName(process.get(), first, text, MAX_PATH));
    return IdentitySource::kFirstModule;
  }
  // Across processor widths the module list is closed to us; the image name is not.
  auto query = ProcessKernel32DllHelper().QueryFullProcessImageNameW();
  wchar_t image[MAX_PATH] = {};
  DWORD size = MAX_PATH;
  if (!query || !query(process.get(), 0, image, &size)) return IdentitySource::kNothing;
  path = FromWide(image, size);
  return IdentitySource::kImageName;
}

bool Win32Processes::ListModulePaths(uint32_t processId, std::vector<std::u16string>& paths) {
  ScopedHandle process(OpenProcess(kQueryAndRead, FALSE, processId));
  if (!process) return false;
  auto enumerate = Psapi().EnumProcessModules();
  auto fileName = Psapi().GetModuleFileNameExW();
  std::vector<HMODULE> modules(kModuleTableEntries, nullptr);
  DWORD needed = 0;
  bool listed = enumerate && fileName &&
                enumerate(process.get(), modules.data(), static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &needed);
  if (listed) {
    // A process with more modules than the table holds is judged by the first ones.
    size_t count = std::min<size_t>(needed / sizeof(HMODULE), modules.size());
    for (size_t i = 0; i < count; ++i) {
      wchar_t text[MAX_PATH] = {};
      paths.push_back(FromWide(text, fileName(process.get(), modules[i], text, MAX_PATH)));
    }
  }
  // Left open until the program ends: this pass has never closed it.
  process.release();
  return listed;
}

bool Win32Processes::Terminate(uint32_t processId, uint32_t exitCode) {
  ScopedHandle process(OpenProcess(PROCESS_TERMINATE, FALSE, processId));
  return process && TerminateProcess(process.get(), exitCode);
}

uint32_t Win32Processes::GetWindowProcessId(void* window) {
  HWND handle = static_cast<HWND>(window);
  if (!handle || !IsWindow(handle)) return 0;
  DWORD processId = 0;
  GetWindowThreadProcessId(handle, &processId);
  return processId;
}

}  // namespace SASM
