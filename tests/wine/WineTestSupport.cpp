#include "tests/wine/WineTestSupport.h"

#include <shlobj.h>

#include <cstring>

#include "broker/BrokerRegistration.h"
#include "connections/win32/Win32LcdAccessor.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32Registry.h"

namespace SASM::WineTest {

std::wstring BinaryDirectory() {
  wchar_t buffer[MAX_PATH];
  std::wstring path(buffer, GetModuleFileNameW(nullptr, buffer, MAX_PATH));
  return path.substr(0, path.find_last_of(L'\\'));
}

std::wstring ModulePath() { return BinaryDirectory() + L"\\LumenUtil.dll"; }

std::wstring SystemDirectory() {
  wchar_t buffer[MAX_PATH];
  return std::wstring(buffer, GetSystemDirectoryW(buffer, MAX_PATH));
}

std::wstring Folder(int csidl) {
  wchar_t buffer[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, buffer))) return L"";
  std::wstring path = buffer;
  if (!path.empty() && path.back() == L'\\') path.pop_back();
  return path;
}

std::wstring RoamingFolder() { return Folder(CSIDL_APPDATA); }

std::wstring TestDirectory(const wchar_t* name) {
  wchar_t temp[MAX_PATH];
  return std::wstring(temp, GetTempPathW(MAX_PATH, temp)) + L"LumenUtilTests\\" + name;
}

std::wstring Lower(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

std::string Utf8(const std::wstring& text) { return MString(FromWide(text.c_str())).ToUtf8(); }

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::string ReadAll(const std::wstring& path) {
  ScopedHandle file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
  std::string bytes(file ? GetFileSize(file.get(), nullptr) : 0, '\0');
  DWORD read = 0;
  if (!bytes.empty()) ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  bytes.resize(read);
  return bytes;
}

std::string PeImage(size_t size) {
  std::string bytes(size, '\x90');
  bytes.replace(0, 2, "MZ");
  bytes.replace(60, 4, std::string("\x80\0\0\0", 4));
  bytes.replace(0x80, 4, std::string("PE\0\0", 4));
  return bytes;
}

ScopedSafeArray ByteArray(std::string_view bytes, LONG lowerBound) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lowerBound};
  ScopedSafeArray array(SafeArrayCreate(VT_UI1, 1, &bound));
  void* data = nullptr;
  if (array && SUCCEEDED(SafeArrayAccessData(array.get(), &data))) {
    if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
    SafeArrayUnaccessData(array.get());
  }
  return array;
}

std::string BytesOf(SAFEARRAY* array) {
  void* data = nullptr;
  if (!array || FAILED(SafeArrayAccessData(array, &data))) return {};
  std::string bytes(static_cast<const char*>(data), array->rgsabound[0].cElements);
  SafeArrayUnaccessData(array);
  return bytes;
}

DWORD RunToEnd(std::wstring commandLine, DWORD timeoutMs, HANDLE out, HANDLE err) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  if (out || err) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = out;
    startup.hStdError = err;
  }
  PROCESS_INFORMATION info{};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, out || err, 0, nullptr, nullptr, &startup,
                      &info))
    return 0xFFFFFFFF;
  ScopedHandle process(info.hProcess), thread(info.hThread);
  DWORD code = 0xFFFFFFFF;
  if (WaitForSingleObject(process.get(), timeoutMs) == WAIT_OBJECT_0) GetExitCodeProcess(process.get(), &code);
  return code;
}

bool LcdMutexExists() { return ScopedHandle(OpenMutexA(SYNCHRONIZE, FALSE, Win32LcdAccessor::kMutexName)).valid(); }
bool LcdMappingExists() {
  return ScopedHandle(OpenFileMappingA(FILE_MAP_READ, FALSE, Win32LcdAccessor::kMappingName)).valid();
}

DWORD UserDword(const wchar_t* key, const wchar_t* name) {
  DWORD value = 0, size = sizeof(value);
  if (RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_DWORD, nullptr, &value, &size) != ERROR_SUCCESS) return 0;
  return value;
}

std::vector<std::string> Reports(ReferenceHost& host, size_t first) {
  std::vector<std::string> lines;
  const auto& entries = host.Log().Entries();
  for (size_t i = first; i < entries.size(); ++i)
    lines.push_back(std::to_string(entries[i].code) + " " + std::to_string(entries[i].severity) + " " +
                    entries[i].text.ToUtf8());
  return lines;
}

HostedShim::HostedShim(const std::u16string& settings, HostOptions options)
    : host(options, MString(std::u16string_view(settings))), shim(StartShim(&host, Win32Platform())) {
  host.shim = shim.get();
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
  for (auto it = files_.rbegin(); it != files_.rend(); ++it) {
    SetFileAttributesW(it->c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(it->c_str());
  }
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

bool TempTree::Copy(const std::wstring& from, const std::wstring& to) {
  Directory(to.substr(0, to.find_last_of(L'\\')));
  if (!CopyFileW(from.c_str(), to.c_str(), FALSE)) return false;
  files_.push_back(to);
  return true;
}

}  // namespace SASM::WineTest
