#include "engine/win32/Win32System.h"

#include "engine/win32/WindowsApi.h"

#include <ntsecapi.h>
#include <psapi.h>
#include <shellapi.h>
#include <shlobj.h>

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

#undef ShellExecute

namespace SASM {

bool Win32System::GetFolderPath(int32_t csidl, std::u16string& path) {
  wchar_t buffer[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, buffer))) return false;
  path = FromWide(buffer);
  return true;
}

bool Win32System::GetSystemDirectory(std::u16string& path) {
  wchar_t buffer[MAX_PATH];
  UINT n = GetSystemDirectoryW(buffer, MAX_PATH);
  if (n == 0 || n >= MAX_PATH) return false;
  path = FromWide(buffer, n);
  return true;
}

bool Win32System::GetSystemWow64Directory(std::u16string& path) {
  wchar_t buffer[MAX_PATH];
  UINT n = GetSystemWow64DirectoryW(buffer, MAX_PATH);
  if (n == 0 || n >= MAX_PATH) return false;
  path = FromWide(buffer, n);
  return true;
}

bool Win32System::IsWow64Process() {
  BOOL wow64 = FALSE;
  return ::IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

uint32_t Win32System::WindowsMajorVersion() {
  // The version functions lie to unmanifested programs; the kernel's own answer does not.
  using RtlGetVersionFn = LONG(WINAPI*)(OSVERSIONINFOW*);
  HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  auto getVersion = ntdll ? reinterpret_cast<RtlGetVersionFn>(GetProcAddress(ntdll, "RtlGetVersion")) : nullptr;
  OSVERSIONINFOW info = {};
  info.dwOSVersionInfoSize = sizeof(info);
  if (getVersion && getVersion(&info) == 0) return info.dwMajorVersion;
  return 0;
}

uint32_t Win32System::TickCount() { return GetTickCount(); }

void Win32System::Sleep(uint32_t milliseconds) { ::Sleep(milliseconds); }

bool Win32System::CurrentFileTime(uint64_t& fileTime) {
  SYSTEMTIME now;
  GetSystemTime(&now);
  FILETIME converted;
  if (!SystemTimeToFileTime(&now, &converted)) return false;
  fileTime = (static_cast<uint64_t>(converted.dwHighDateTime) << 32) | converted.dwLowDateTime;
  return true;
}

bool Win32System::DrawRandom(uint32_t& value) {
  ULONG draw = 0;
  if (!RtlGenRandom(&draw, sizeof(draw))) return false;
  value = draw;
  return true;
}

bool Win32System::LoadResourceString(void* module, uint32_t id, std::u16string& text) {
  const wchar_t* resource = nullptr;
  int n = LoadStringW(static_cast<HMODULE>(module), id, reinterpret_cast<LPWSTR>(&resource), 0);
  if (n <= 0 || !resource) return false;
  text = FromWide(resource, static_cast<size_t>(n));
  return true;
}

intptr_t Win32System::ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                                   std::u16string_view parameters) {
  std::wstring v = ToWide(verb), f = ToWide(file), p = ToWide(parameters);
  HINSTANCE result = ShellExecuteW(static_cast<HWND>(window), v.c_str(), f.c_str(), p.empty() ? nullptr : p.c_str(),
                                   nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<intptr_t>(result);
}

int32_t Win32System::StartProcess(std::u16string_view commandLine) {
  std::wstring command = ToWide(commandLine);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    return static_cast<int32_t>(GetLastError());
  ScopedHandle thread(process.hThread);
  ScopedHandle started(process.hProcess);
  return ERROR_SUCCESS;
}

bool Win32System::EnumerateProcesses(std::vector<uint32_t>& ids) {
  // The call can't say how many there are: grow the table until it isn't filled.
  std::vector<DWORD> table(256);
  while (true) {
    DWORD bytes = 0;
    if (!K32EnumProcesses(table.data(), static_cast<DWORD>(table.size() * sizeof(DWORD)), &bytes)) return false;
    if (bytes < table.size() * sizeof(DWORD)) {
      ids.assign(table.begin(), table.begin() + bytes / sizeof(DWORD));
      return true;
    }
    table.resize(table.size() * 2);
  }
}

std::u16string Win32System::FromSystemCodePage(std::string_view text) {
  if (text.empty()) return {};
  int length = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  if (length <= 0) return {};
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
  return FromWide(wide.c_str(), wide.size());
}

}  // namespace SASM
