#pragma once
// The files of add-on products over CreateFileW and its family.
#include "delivery/IProductFiles.h"

namespace SASM {

class Win32ProductFiles : public IProductFiles {
 public:
  bool LoadFileToBuffer(std::u16string_view path, ByteBuffer& buffer) override;
  int32_t CreateForWrite(std::u16string_view path, FileHandleId& handle) override;
  int32_t WriteAtEnd(FileHandleId handle, const uint8_t* data, uint32_t size, uint32_t& written) override;
  int32_t OpenForReading(std::u16string_view path, FileHandleId& handle) override;
  int32_t Read(FileHandleId handle, uint8_t* data, uint32_t size, uint32_t& read) override;
  void Close(FileHandleId handle) override;
  int32_t Delete(std::u16string_view path) override;
  bool DirectoryExists(std::u16string_view path) override;
  int32_t CreateDirectory(std::u16string_view path) override;
};

}  // namespace SASM
