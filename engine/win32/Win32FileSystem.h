#pragma once
#include "engine/IFileSystem.h"

namespace SASM {

class Win32FileSystem : public IFileSystem {
 public:
  int32_t Open(std::u16string_view path, int32_t mode, FileHandleId& handle) override;
  void Close(FileHandleId handle) override;
  int32_t GetSize(FileHandleId handle, uint64_t& size) override;
  int32_t ReadAll(std::u16string_view path, std::string& bytes) override;
  int32_t Delete(std::u16string_view path) override;
  int32_t GetAttributes(std::u16string_view path, uint32_t& attributes) override;
  int32_t SetAttributes(std::u16string_view path, uint32_t attributes) override;
  int32_t GetLastWriteTime(std::u16string_view path, uint64_t& fileTime) override;
  int32_t EnumerateDirectory(std::u16string_view directory, std::vector<std::u16string>& names) override;
  int32_t CreateDirectory(std::u16string_view path) override;
  int32_t RemoveDirectory(std::u16string_view path) override;
  int32_t DeleteAtReboot(std::u16string_view path) override;
  int32_t GetFullPath(std::u16string_view path, std::u16string& full) override;
  int32_t GetLongPath(std::u16string_view path, std::u16string& longPath) override;
  int32_t GetTempPath(std::u16string& path) override;
};

}  // namespace SASM
