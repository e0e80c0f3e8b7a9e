#pragma once
// Product files in memory, by full path, with the failures a test asks for.
#include <map>
#include <set>
#include <string>

#include "delivery/IProductFiles.h"

namespace SASM {

class FakeProductFiles : public IProductFiles {
 public:
  std::map<std::u16string, std::string> files;
  std::set<std::u16string> directories;
  // Paths whose creation fails with 5.
  std::set<std::u16string> refuseCreate;
  // A write puts out at most this many bytes.
  uint32_t writeLimit = UINT32_MAX;
  // Every creation, in order, so a test sees a file that came and went.
  std::vector<std::u16string> created;

  bool LoadFileToBuffer(std::u16string_view path, ByteBuffer& buffer) override;
  int32_t CreateForWrite(std::u16string_view path, FileHandleId& handle) override;
  int32_t WriteAtEnd(FileHandleId handle, const uint8_t* data, uint32_t size, uint32_t& written) override;
  int32_t OpenForReading(std::u16string_view path, FileHandleId& handle) override;
  int32_t Read(FileHandleId handle, uint8_t* data, uint32_t size, uint32_t& read) override;
  void Close(FileHandleId handle) override { open_.erase(handle); }
  int32_t Delete(std::u16string_view path) override { return files.erase(std::u16string(path)) ? 0 : 2; }
  bool DirectoryExists(std::u16string_view path) override { return directories.count(std::u16string(path)) > 0; }
  int32_t CreateDirectory(std::u16string_view path) override;

  size_t OpenHandles() const { return open_.size(); }
  size_t LargestRead() const { return largestRead_; }

 private:
  struct Open {
    std::u16string path;
    size_t position = 0;
  };
  std::map<FileHandleId, Open> open_;
  FileHandleId next_ = 100;
  size_t largestRead_ = 0;
};

}  // namespace SASM
