#include "tests/wine/WineTestSupport.h"

#include <shlobj.h>

#include "broker/BrokerRegistration.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/Win32Registry.h"

namespace SASM::WineTest {

std::wstring BinaryDirectory() {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, buffer, MAX_PATH);
  std::wstring path(buffer, n);
  return path.substr(0, path.find_last_of(L'\\'));
}

std::wstring ModulePath() { return BinaryDirectory() + L"\\LumenUtil.dll"; }

std::wstring SystemDirectory() {
  wchar_t buffer[MAX_PATH];
  UINT n = GetSystemDirectoryW(buffer, MAX_PATH);
  return std::wstring(buffer, n);
}

std::wstring WindowsDirectory() {
  wchar_t buffer[MAX_PATH];
  UINT n = GetWindowsDirectoryW(buffer, MAX_PATH);
  return std::wstring(buffer, n);
}

std::wstring RoamingFolder() {
  wchar_t buffer[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, buffer))) return L"";
  return buffer;
}

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::string ReadAll(const std::wstring& path) {
  ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return "";
  char buffer[4096];
  DWORD got = 0;
  if (!ReadFile(file.get(), buffer, sizeof(buffer), &got, nullptr)) return "";
  return std::string(buffer, got);
}

bool KeyExists(const std::wstring& path) {
  ScopedRegKey key;
  return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, key.receive()) ==
         ERROR_SUCCESS;
}

void DeleteBothViews(const std::wstring& path, bool parentIfEmpty) {
  size_t slash = path.find_last_of(L'\\');
  std::wstring parent = path.substr(0, slash), leaf = path.substr(slash + 1);
  for (REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
    ScopedRegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, parent.c_str(), 0, KEY_ALL_ACCESS | view, key.receive()) != ERROR_SUCCESS)
      continue;
    RegDeleteTreeW(key.get(), leaf.c_str());
    key.reset();
    if (parentIfEmpty) RegDeleteKeyExW(HKEY_LOCAL_MACHINE, parent.c_str(), view, 0);
  }
}

void ForgetProductRegistration() {
  using namespace ProductKeys;
  for (const wchar_t* kind : {L"ActiveX", L"NPAPI", L"PPAPI"}) DeleteBothViews(std::wstring(kUninstall) + kind);
  for (const wchar_t* kind : {L"ActiveX", L"Plugin", L"Pepper"}) {
    DeleteBothViews(std::wstring(kProduct) + kind);
    DeleteBothViews(std::wstring(kProduct) + kind + L"ReleaseType", true);
  }
  DeleteBothViews(kCompatibility);
  DeleteBothViews(kPlugin, true);
  Win32Registry registry;
  BrokerRegistration::WriteBrokerRegistration(registry, nullptr, false);
  RegDeleteTreeW(HKEY_CURRENT_USER, kCounterKey);
}

TempTree::~TempTree() {
  for (auto it = files_.rbegin(); it != files_.rend(); ++it) DeleteFileW(it->c_str());
  for (auto it = directories_.rbegin(); it != directories_.rend(); ++it) RemoveDirectoryW(it->c_str());
}

void TempTree::Directory(const std::wstring& path) {
  for (size_t at = path.find(L'\\', 3); ; at = path.find(L'\\', at + 1)) {
    std::wstring prefix = at == std::wstring::npos ? path : path.substr(0, at);
    if (!prefix.empty() && GetFileAttributesW(prefix.c_str()) == INVALID_FILE_ATTRIBUTES &&
        CreateDirectoryW(prefix.c_str(), nullptr))
      directories_.push_back(prefix);
    if (at == std::wstring::npos) break;
  }
}

void TempTree::File(const std::wstring& path, const std::string& content) {
  Directory(path.substr(0, path.find_last_of(L'\\')));
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
  CloseHandle(file);
  files_.push_back(path);
}

MovedAside::MovedAside(std::wstring path) : path_(std::move(path)) {
  moved_ = GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES &&
           MoveFileExW(path_.c_str(), (path_ + L".aside").c_str(), 0);
}

MovedAside::~MovedAside() {
  if (moved_) MoveFileExW((path_ + L".aside").c_str(), path_.c_str(), 0);
}

}  // namespace SASM::WineTest
