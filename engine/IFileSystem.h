#pragma once
// File system seam. Results are the platform's error numbers (0 success,
// 2 missing, 5 denied, 32 in use by another process, ...).
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

// Open modes by number: each shares reading; 2 seeks to the end after opening.
enum class FileOpenMode : int32_t { ReadWrite = 1, Append = 2, Write = 3, Read = 4 };

namespace FileError {
constexpr int32_t kSuccess = 0;
constexpr int32_t kFileNotFound = 2;
constexpr int32_t kPathNotFound = 3;
constexpr int32_t kAccessDenied = 5;
constexpr int32_t kSharingViolation = 32;
constexpr int32_t kNoMoreFiles = 18;
constexpr int32_t kInsufficientBuffer = 122;
constexpr int32_t kDirectoryNotEmpty = 145;
constexpr int32_t kAlreadyExists = 183;
}  // namespace FileError

namespace FileAttribute {
constexpr uint32_t kReadOnly = 0x1;
constexpr uint32_t kHidden = 0x2;
constexpr uint32_t kDirectory = 0x10;
constexpr uint32_t kArchive = 0x20;
constexpr uint32_t kNormal = 0x80;
}  // namespace FileAttribute

using FileHandleId = uint64_t;

class IFileSystem {
 public:
  virtual ~IFileSystem() = default;
  // Opens an existing file; any mode number outside 1..4 means read and write.
  virtual int32_t Open(std::u16string_view path, int32_t mode, FileHandleId& handle) = 0;
  virtual void Close(FileHandleId handle) = 0;
  virtual int32_t GetSize(FileHandleId handle, uint64_t& size) = 0;
  // Whole-file read, for small configuration files.
  virtual int32_t ReadAll(std::u16string_view path, std::string& bytes) = 0;
  virtual int32_t Delete(std::u16string_view path) = 0;
  virtual int32_t GetAttributes(std::u16string_view path, uint32_t& attributes) = 0;
  virtual int32_t SetAttributes(std::u16string_view path, uint32_t attributes) = 0;
  // As a file time (100 ns units since 1601, UTC).
  virtual int32_t GetLastWriteTime(std::u16string_view path, uint64_t& fileTime) = 0;
  // Names in the order the platform's enumeration returns them, "." and ".." included.
  virtual int32_t EnumerateDirectory(std::u16string_view directory, std::vector<std::u16string>& names) = 0;
  virtual int32_t CreateDirectory(std::u16string_view path) = 0;
  virtual int32_t RemoveDirectory(std::u16string_view path) = 0;
  // Queues a delete for the next restart (the move with delay-until-reboot).
  virtual int32_t DeleteAtReboot(std::u16string_view path) = 0;
  virtual int32_t GetFullPath(std::u16string_view path, std::u16string& full) = 0;
  virtual int32_t GetLongPath(std::u16string_view path, std::u16string& longPath) = 0;
  virtual int32_t GetTempPath(std::u16string& path) = 0;
};

}  // namespace SASM
