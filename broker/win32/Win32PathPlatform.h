#pragma once
// The path policy's platform: each operation is the one Win32 call it names.
#include "broker/PathPlatform.h"

namespace SASM {

class Win32PathPlatform : public PathPlatform {
 public:
  // Finds ntdll's link-object functions; without them no name is a link object.
  Win32PathPlatform();

  uint32_t GetFullPathName(const char16_t* path, uint32_t bufferLength, std::u16string& full) override;
  uint32_t GetLongPathName(const char16_t* path, uint32_t bufferLength, std::u16string& longPath) override;
  uint32_t GetTempPath(uint32_t bufferLength, std::u16string& path) override;
  bool CharUpperBuff(std::u16string& text) override;
  uint32_t GetFileAttributes(const char16_t* path) override;
  bool GetFileAttributesEx(const char16_t* path, uint32_t& attributes) override;
  bool GetFolderPath(int32_t csidl, std::u16string& path) override;
  bool ReadUserString(const char16_t* keyPath, const char16_t* valueName, uint32_t maxBytes,
                      std::u16string& value) override;
  bool OpenSymbolicLinkObject(const char16_t* objectName, uint32_t access, uint32_t attributes, Handle& link) override;
  bool QuerySymbolicLinkObject(Handle link, uint16_t maximumBytes, std::u16string& target) override;
  bool CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition, uint32_t flags,
                  Handle& file) override;
  bool DeviceIoControl(Handle device, uint32_t controlCode, std::vector<uint8_t>& output,
                       uint32_t& bytesReturned) override;
  void CloseHandle(Handle handle) override;

 private:
  // ntdll's entries, kept as found; null when missing.
  void* openLink_ = nullptr;
  void* queryLink_ = nullptr;
  void* initString_ = nullptr;
};

}  // namespace SASM
