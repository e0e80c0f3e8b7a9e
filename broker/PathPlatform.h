#pragma once
// What the broker's path policy asks of the system. Each operation is one
// platform call (the shell-folder fallback is one registry read) and keeps
// that call's conventions, so the Win32 side is a thin pass-through and a fake
// can answer from tables.
#include <cstdint>
#include <string>
#include <vector>

namespace SASM {

namespace PathAttribute {
constexpr uint32_t kInvalid = 0xFFFFFFFF;  // INVALID_FILE_ATTRIBUTES
constexpr uint32_t kDirectory = 0x10;
constexpr uint32_t kArchive = 0x20;
constexpr uint32_t kReparsePoint = 0x400;
}  // namespace PathAttribute

class PathPlatform {
 public:
  // A kernel handle, as HANDLE.
  using Handle = void*;

  virtual ~PathPlatform() = default;

  // GetFullPathNameW into a buffer of bufferLength units. Returns the length
  // stored in `full`, the size needed (terminator included) when it doesn't
  // fit, in which case `full` is untouched, or 0 on failure.
  virtual uint32_t GetFullPathName(const char16_t* path, uint32_t bufferLength, std::u16string& full) = 0;
  // GetLongPathNameW, with the conventions of GetFullPathName.
  virtual uint32_t GetLongPathName(const char16_t* path, uint32_t bufferLength, std::u16string& longPath) = 0;
  // GetTempPathW, with the conventions of GetFullPathName.
  virtual uint32_t GetTempPath(uint32_t bufferLength, std::u16string& path) = 0;
  // CharUpperBuffW over the whole text, in place; false only when the function can't be bound.
  virtual bool CharUpperBuff(std::u16string& text) = 0;
  // GetFileAttributesW: PathAttribute::kInvalid on failure.
  virtual uint32_t GetFileAttributes(const char16_t* path) = 0;
  // GetFileAttributesExW at the standard level; only the attributes are wanted.
  virtual bool GetFileAttributesEx(const char16_t* path, uint32_t& attributes) = 0;
  // SHGetFolderPathW with no window, no token and flags 0; false when unbound or failing.
  virtual bool GetFolderPath(int32_t csidl, std::u16string& path) = 0;
  // RegOpenKeyExW under the current user's hive for reading, then RegQueryValueExW of
  // a string value into a buffer of maxBytes; false when absent or too large.
  virtual bool ReadUserString(const char16_t* keyPath, const char16_t* valueName, uint32_t maxBytes,
                              std::u16string& value) = 0;
  // RtlInitUnicodeString and NtOpenSymbolicLinkObject with no root directory; false
  // when the name is no link object or ntdll's functions can't be found.
  virtual bool OpenSymbolicLinkObject(const char16_t* objectName, uint32_t access, uint32_t attributes,
                                      Handle& link) = 0;
  // NtQuerySymbolicLinkObject into a counted string of maximumBytes.
  virtual bool QuerySymbolicLinkObject(Handle link, uint16_t maximumBytes, std::u16string& target) = 0;
  // CreateFileW with no security attributes and no template.
  virtual bool CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition,
                          uint32_t flags, Handle& file) = 0;
  // DeviceIoControl with no input; output.size() is the buffer offered.
  virtual bool DeviceIoControl(Handle device, uint32_t controlCode, std::vector<uint8_t>& output,
                               uint32_t& bytesReturned) = 0;
  virtual void CloseHandle(Handle handle) = 0;
};

}  // namespace SASM
