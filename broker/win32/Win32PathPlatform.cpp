#include "broker/win32/Win32PathPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <shlobj.h>
#include <winternl.h>

#include "engine/win32/ScopedRegKey.h"

namespace SASM {
namespace {

using OpenLinkFn = NTSTATUS(NTAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*);
using QueryLinkFn = NTSTATUS(NTAPI*)(HANDLE, UNICODE_STRING*, ULONG*);
using InitStringFn = VOID(NTAPI*)(UNICODE_STRING*, PCWSTR);

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// The platform's answer in a buffer of bufferLength units, with its length conventions.
template <typename Call>
uint32_t Answer(uint32_t bufferLength, std::u16string& out, Call call) {
  std::u16string buffer(bufferLength, u'\0');
  DWORD length = call(reinterpret_cast<wchar_t*>(buffer.data()));
  if (length > 0 && length < bufferLength) out.assign(buffer.data(), length);
  return length;
}

template <typename Signature>
Signature As(void* entry) {
  return reinterpret_cast<Signature>(entry);
}

}  // namespace

Win32PathPlatform::Win32PathPlatform() {
  // ntdll is in every process; nothing is loaded here.
  HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  if (!ntdll) return;
  openLink_ = reinterpret_cast<void*>(GetProcAddress(ntdll, "NtOpenSymbolicLinkObject"));
  queryLink_ = reinterpret_cast<void*>(GetProcAddress(ntdll, "NtQuerySymbolicLinkObject"));
  initString_ = reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlInitUnicodeString"));
}

uint32_t Win32PathPlatform::GetFullPathName(const char16_t* path, uint32_t bufferLength, std::u16string& full) {
  if (!path) return 0;
  return Answer(bufferLength, full,
                [&](wchar_t* buffer) { return GetFullPathNameW(Wide(path), bufferLength, buffer, nullptr); });
}

uint32_t Win32PathPlatform::GetLongPathName(const char16_t* path, uint32_t bufferLength, std::u16string& longPath) {
  if (!path) return 0;
  return Answer(bufferLength, longPath,
                [&](wchar_t* buffer) { return GetLongPathNameW(Wide(path), buffer, bufferLength); });
}

uint32_t Win32PathPlatform::GetTempPath(uint32_t bufferLength, std::u16string& path) {
  return Answer(bufferLength, path, [&](wchar_t* buffer) { return GetTempPathW(bufferLength, buffer); });
}

bool Win32PathPlatform::CharUpperBuff(std::u16string& text) {
  CharUpperBuffW(reinterpret_cast<wchar_t*>(text.data()), static_cast<DWORD>(text.size()));
  return true;
}

uint32_t Win32PathPlatform::GetFileAttributes(const char16_t* path) {
  return path ? GetFileAttributesW(Wide(path)) : PathAttribute::kInvalid;
}

bool Win32PathPlatform::GetFileAttributesEx(const char16_t* path, uint32_t& attributes) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!path || !GetFileAttributesExW(Wide(path), GetFileExInfoStandard, &data)) return false;
  attributes = data.dwFileAttributes;
  return true;
}

bool Win32PathPlatform::GetFolderPath(int32_t csidl, std::u16string& path) {
  wchar_t buffer[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, 0, buffer))) return false;
  path.assign(reinterpret_cast<const char16_t*>(buffer));
  return true;
}

bool Win32PathPlatform::ReadUserString(const char16_t* keyPath, const char16_t* valueName, uint32_t maxBytes,
                                       std::u16string& value) {
  ScopedRegKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(keyPath), 0, KEY_READ, key.receive()) != ERROR_SUCCESS) return false;
  std::u16string buffer(maxBytes / 2 + 1, u'\0');
  DWORD type = 0;
  DWORD size = maxBytes;
  if (RegQueryValueExW(key.get(), Wide(valueName), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &size) !=
      ERROR_SUCCESS)
    return false;
  if (type != REG_SZ && type != REG_EXPAND_SZ) return false;
  buffer.resize(size / 2);
  while (!buffer.empty() && buffer.back() == u'\0') buffer.pop_back();
  value = buffer;
  return true;
}

bool Win32PathPlatform::OpenSymbolicLinkObject(const char16_t* objectName, uint32_t access, uint32_t attributes,
                                               Handle& link) {
  if (!openLink_ || !initString_ || !objectName) return false;
  UNICODE_STRING name{};
  As<InitStringFn>(initString_)(&name, Wide(objectName));
  OBJECT_ATTRIBUTES object{};
  object.Length = sizeof(object);
  object.ObjectName = &name;
  object.Attributes = attributes;
  HANDLE opened = nullptr;
  if (!NT_SUCCESS(As<OpenLinkFn>(openLink_)(&opened, access, &object))) return false;
  link = opened;
  return true;
}

bool Win32PathPlatform::QuerySymbolicLinkObject(Handle link, uint16_t maximumBytes, std::u16string& target) {
  if (!queryLink_) return false;
  std::u16string buffer(maximumBytes / 2 + 1, u'\0');
  UNICODE_STRING text{};
  text.Buffer = reinterpret_cast<wchar_t*>(buffer.data());
  text.MaximumLength = maximumBytes;
  if (!NT_SUCCESS(As<QueryLinkFn>(queryLink_)(link, &text, nullptr))) return false;
  target.assign(buffer.data(), text.Length / 2);
  return true;
}

bool Win32PathPlatform::CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition,
                                   uint32_t flags, Handle& file) {
  HANDLE opened = CreateFileW(Wide(path), access, shareMode, nullptr, disposition, flags, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return false;
  file = opened;
  return true;
}

bool Win32PathPlatform::DeviceIoControl(Handle device, uint32_t controlCode, std::vector<uint8_t>& output,
                                        uint32_t& bytesReturned) {
  DWORD returned = 0;
  BOOL done = ::DeviceIoControl(device, controlCode, nullptr, 0, output.data(), static_cast<DWORD>(output.size()),
                                &returned, nullptr);
  bytesReturned = returned;
  return done != FALSE;
}

void Win32PathPlatform::CloseHandle(Handle handle) {
  if (handle && handle != INVALID_HANDLE_VALUE) ::CloseHandle(handle);
}

}  // namespace SASM
