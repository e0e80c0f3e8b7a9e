#include "engine/win32/Win32Registry.h"

#include "engine/win32/WindowsApi.h"

#include "engine/win32/LateBoundFunction.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

HKEY Root(RegistryHive hive) { return hive == RegistryHive::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

LSTATUS Open(RegistryHive hive, std::u16string_view path, uint32_t access, ScopedRegKey& key) {
  return RegOpenKeyExW(Root(hive), ToWide(path).c_str(), 0, access, key.receive());
}

LSTATUS Create(RegistryHive hive, std::u16string_view path, uint32_t access, ScopedRegKey& key) {
  return RegCreateKeyExW(Root(hive), ToWide(path).c_str(), 0, nullptr, 0, access, nullptr, key.receive(), nullptr);
}

LSTATUS Query(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t access,
              DWORD& type, std::string& bytes) {
  ScopedRegKey key;
  LSTATUS status = Open(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  std::wstring valueName = ToWide(name);
  DWORD size = 0;
  status = RegQueryValueExW(key.get(), valueName.c_str(), nullptr, &type, nullptr, &size);
  if (status != ERROR_SUCCESS) return status;
  bytes.assign(size, '\0');
  status = RegQueryValueExW(key.get(), valueName.c_str(), nullptr, &type,
                            reinterpret_cast<BYTE*>(bytes.data()), &size);
  bytes.resize(size);
  return status;
}

}  // namespace

int32_t Win32Registry::OpenKey(RegistryHive hive, std::u16string_view path, uint32_t access) {
  ScopedRegKey key;
  return Open(hive, path, access, key);
}

int32_t Win32Registry::CreateKey(RegistryHive hive, std::u16string_view path, uint32_t access) {
  ScopedRegKey key;
  return Create(hive, path, access, key);
}

int32_t Win32Registry::SetString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                 std::u16string_view data, uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Create(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  std::wstring text = ToWide(data);
  return RegSetValueExW(key.get(), ToWide(name).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

int32_t Win32Registry::SetNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                       std::string_view data, uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Create(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  std::string text(data);
  std::string valueName;
  for (char16_t c : name) valueName.push_back(static_cast<char>(c));
  return RegSetValueExA(key.get(), valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>(text.size() + 1));
}

int32_t Win32Registry::SetDword(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                uint32_t data, uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Create(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  DWORD value = data;
  return RegSetValueExW(key.get(), ToWide(name).c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                        sizeof(value));
}

int32_t Win32Registry::ReadString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                  std::u16string& out, uint32_t access) {
  DWORD type = 0;
  std::string bytes;
  LSTATUS status = Query(hive, path, name, access, type, bytes);
  if (status != ERROR_SUCCESS) return status;
  if (type != REG_SZ && type != REG_EXPAND_SZ) return ERROR_INVALID_DATATYPE;
  out.assign(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
  while (!out.empty() && out.back() == 0) out.pop_back();
  return ERROR_SUCCESS;
}

int32_t Win32Registry::ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                        std::string& out, uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Open(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  std::string valueName;
  for (char16_t c : name) valueName.push_back(static_cast<char>(c));
  DWORD type = 0, size = 0;
  status = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, nullptr, &size);
  if (status != ERROR_SUCCESS) return status;
  out.assign(size, '\0');
  status = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(out.data()), &size);
  if (status != ERROR_SUCCESS) return status;
  if (type != REG_SZ && type != REG_EXPAND_SZ) return ERROR_INVALID_DATATYPE;
  out.resize(size);
  while (!out.empty() && out.back() == 0) out.pop_back();
  return ERROR_SUCCESS;
}

int32_t Win32Registry::ReadDword(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                 uint32_t& out, uint32_t access) {
  DWORD type = 0;
  std::string bytes;
  LSTATUS status = Query(hive, path, name, access, type, bytes);
  if (status != ERROR_SUCCESS) return status;
  if (type != REG_DWORD || bytes.size() != sizeof(DWORD)) return ERROR_INVALID_DATATYPE;
  DWORD value;
  memcpy(&value, bytes.data(), sizeof(value));
  out = value;
  return ERROR_SUCCESS;
}

int32_t Win32Registry::DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                   uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Open(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  return RegDeleteValueW(key.get(), ToWide(name).c_str());
}

int32_t Win32Registry::BlankValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                  uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Open(hive, path, access, key);
  if (status != ERROR_SUCCESS) return status;
  std::string valueName;
  for (char16_t c : name) valueName.push_back(static_cast<char>(c));
  return RegSetValueExA(key.get(), valueName.c_str(), 0, REG_SZ, nullptr, 0);
}

LateBoundFunction& Win32Registry::DeleteKeyFunction() {
  static LateBoundFunction deleteKey(L"shlwapi.dll", "SHDeleteKeyW");
  return deleteKey;
}

int32_t Win32Registry::DeleteTree(RegistryHive hive, std::u16string_view path) {
  using DeleteKeyFn = LSTATUS(WINAPI*)(HKEY, LPCWSTR);
  auto deleteKey = deleteKey_.As<DeleteKeyFn>();
  if (!deleteKey) return RegistryError::kDeleteUnavailable;
  return deleteKey(Root(hive), ToWide(path).c_str());
}

int32_t Win32Registry::EnumerateSubkeys(RegistryHive hive, std::u16string_view path,
                                        std::vector<std::u16string>& names, uint32_t access) {
  ScopedRegKey key;
  LSTATUS status = Open(hive, path, access | KEY_ENUMERATE_SUB_KEYS, key);
  if (status != ERROR_SUCCESS) return status;
  for (DWORD index = 0;; ++index) {
    wchar_t name[256];
    DWORD length = 256;
    status = RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
    if (status != ERROR_SUCCESS) return status;
    names.push_back(FromWide(name, length));
  }
}

}  // namespace SASM
