#pragma once
// The file family's platform: each operation is the one Win32 call it names.
// The functions the family asks about are found at run time in kernel32.
#include "broker/BrokerFilePlatform.h"
#include "engine/win32/Kernel32DllHelper.h"

namespace SASM {

class Win32BrokerFilePlatform : public BrokerFilePlatform {
 public:
  bool IsBound(Function function) override;
  uint32_t CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition, uint32_t flags,
                      Handle& handle) override;
  uint32_t ReadFile(Handle file, uint8_t* buffer, uint32_t length, uint32_t& read) override;
  uint32_t WriteFile(Handle file, const uint8_t* data, uint32_t length, uint32_t& written) override;
  uint32_t SetFilePointer(Handle file, int32_t distance, uint32_t moveMethod, uint32_t& error) override;
  bool CloseHandle(Handle handle) override;
  uint32_t DeleteFile(const char16_t* path) override;
  uint32_t RemoveDirectory(const char16_t* path) override;
  uint32_t CreateDirectory(const char16_t* path) override;
  uint32_t MoveFileEx(const char16_t* from, const char16_t* to, uint32_t flags) override;
  uint32_t GetFileAttributes(const char16_t* path) override;
  uint32_t GetFileAttributesEx(const char16_t* path, FileAttributeData& data) override;
  uint32_t FindFirstFile(const char16_t* pattern, Handle& handle, FileFindData& data) override;
  uint32_t FindNextFile(Handle find, FileFindData& data) override;
  uint32_t FindClose(Handle find) override;
  bool PathIsDirectory(const char16_t* path) override;
  // PathCchRemoveFileSpec where the system has it, the shell's older form otherwise.
  void RemoveFileSpec(std::u16string& path) override;
  int32_t FileOperation(uint32_t operation, const std::u16string& from, uint16_t flags) override;

  ByteArray CreateByteArray(uint32_t count) override;
  bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) override;
  int32_t AccessByteArray(ByteArray array, uint8_t*& data) override;
  void UnaccessByteArray(ByteArray array) override;
  void DestroyByteArray(ByteArray array) override;

 private:
  Kernel32DllHelper kernel32_;
};

}  // namespace SASM
