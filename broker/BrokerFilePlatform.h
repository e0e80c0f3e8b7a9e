#pragma once
// What the broker's file family asks of the system: the kernel's file calls,
// the shell's tree delete and the automation byte arrays that carry data in
// and out. Each operation is one platform call and keeps its conventions, so
// the Win32 side is a pass-through and a fake can hold its files in memory.
// Errors are the platform's numbers (GetLastError), 0 for success.
#include <cstdint>
#include <string>

#include "broker/ByteArrayShape.h"
#include "broker/FileAttributeData.h"
#include "broker/FileFindData.h"

namespace SASM {

namespace FileAccess {
constexpr uint32_t kGenericRead = 0x80000000;
constexpr uint32_t kGenericWrite = 0x40000000;
}  // namespace FileAccess

namespace FileShare {
constexpr uint32_t kRead = 1;
constexpr uint32_t kReadWrite = 3;
}  // namespace FileShare

namespace FileDisposition {
constexpr uint32_t kCreateNew = 1;
constexpr uint32_t kCreateAlways = 2;
constexpr uint32_t kOpenExisting = 3;
constexpr uint32_t kOpenAlways = 4;
}  // namespace FileDisposition

namespace FileFlag {
constexpr uint32_t kNormal = 0x80;
constexpr uint32_t kSequentialScan = 0x08000000;
constexpr uint32_t kRandomAccess = 0x10000000;
// Overlapped and backup semantics: what opens a directory.
constexpr uint32_t kDirectoryHandle = 0x42000000;
}  // namespace FileFlag

namespace FileMoveMethod {
constexpr uint32_t kBegin = 0;
constexpr uint32_t kCurrent = 1;
constexpr uint32_t kEnd = 2;
}  // namespace FileMoveMethod

class BrokerFilePlatform {
 public:
  // A kernel handle widened to 64 bits; all ones is INVALID_HANDLE_VALUE.
  using Handle = uint64_t;
  static constexpr Handle kInvalidHandle = ~uint64_t{0};
  // An automation array of bytes (SAFEARRAY*), opaque to the portable code.
  using ByteArray = void*;

  // The functions the family finds at run time and must ask about.
  enum class Function {
    kCreateFile,
    kDeleteFile,
    kRemoveDirectory,
    kCreateDirectory,
    kMoveFileEx,
    kGetFileAttributesEx,
    kFindFirstFile,
    kFindNextFile,
  };

  virtual ~BrokerFilePlatform() = default;

  virtual bool IsBound(Function function) = 0;

  // CreateFileW with no security attributes and no template. `handle` is the
  // result as it came (0 or all ones on failure); the return is the error.
  virtual uint32_t CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition,
                              uint32_t flags, Handle& handle) = 0;
  virtual uint32_t ReadFile(Handle file, uint8_t* buffer, uint32_t length, uint32_t& read) = 0;
  virtual uint32_t WriteFile(Handle file, const uint8_t* data, uint32_t length, uint32_t& written) = 0;
  // SetFilePointer with no high part: the new position, or all ones with `error` set.
  virtual uint32_t SetFilePointer(Handle file, int32_t distance, uint32_t moveMethod, uint32_t& error) = 0;
  virtual bool CloseHandle(Handle handle) = 0;
  virtual uint32_t DeleteFile(const char16_t* path) = 0;
  virtual uint32_t RemoveDirectory(const char16_t* path) = 0;
  // CreateDirectoryW with no security attributes.
  virtual uint32_t CreateDirectory(const char16_t* path) = 0;
  virtual uint32_t MoveFileEx(const char16_t* from, const char16_t* to, uint32_t flags) = 0;
  // GetFileAttributesW: 0xFFFFFFFF on failure.
  virtual uint32_t GetFileAttributes(const char16_t* path) = 0;
  virtual uint32_t GetFileAttributesEx(const char16_t* path, FileAttributeData& data) = 0;
  // FindFirstFileW: `handle` as it came, the error when it is 0 or all ones.
  virtual uint32_t FindFirstFile(const char16_t* pattern, Handle& handle, FileFindData& data) = 0;
  virtual uint32_t FindNextFile(Handle find, FileFindData& data) = 0;
  virtual uint32_t FindClose(Handle find) = 0;
  // PathIsDirectoryW.
  virtual bool PathIsDirectory(const char16_t* path) = 0;
  // PathCchRemoveFileSpec over the whole text, in place.
  virtual void RemoveFileSpec(std::u16string& path) = 0;
  // SHFileOperationW with no window; `from` holds its own double terminator.
  // The operation's result as it came.
  virtual int32_t FileOperation(uint32_t operation, const std::u16string& from, uint16_t flags) = 0;

  // SafeArrayCreateVector of bytes with lower bound 0; null on failure.
  virtual ByteArray CreateByteArray(uint32_t count) = 0;
  // False for a null array.
  virtual bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) = 0;
  // SafeArrayAccessData: its HRESULT.
  virtual int32_t AccessByteArray(ByteArray array, uint8_t*& data) = 0;
  virtual void UnaccessByteArray(ByteArray array) = 0;
  virtual void DestroyByteArray(ByteArray array) = 0;
};

}  // namespace SASM
