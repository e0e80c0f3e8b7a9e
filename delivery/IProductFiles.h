#pragma once
// Seam for the files of add-on products. Results are the platform's error
// numbers (0 success), as in IFileSystem.
#include <cstdint>
#include <string_view>

#include "delivery/ByteBuffer.h"
#include "engine/IFileSystem.h"

namespace SASM {

class IProductFiles {
 public:
  virtual ~IProductFiles() = default;
  // True only when the whole file was read into buffer.
  virtual bool LoadFileToBuffer(std::u16string_view path, ByteBuffer& buffer) = 0;
  // Always creates (truncating), for writing, sharing read access, for random access.
  virtual int32_t CreateForWrite(std::u16string_view path, FileHandleId& handle) = 0;
  // Seeks to the end, then writes; written says how many bytes went out.
  virtual int32_t WriteAtEnd(FileHandleId handle, const uint8_t* data, uint32_t size, uint32_t& written) = 0;
  // Opens an existing file for reading in sequence.
  virtual int32_t OpenForReading(std::u16string_view path, FileHandleId& handle) = 0;
  // One read of at most size bytes; 0 bytes read at the end.
  virtual int32_t Read(FileHandleId handle, uint8_t* data, uint32_t size, uint32_t& read) = 0;
  virtual void Close(FileHandleId handle) = 0;
  virtual int32_t Delete(std::u16string_view path) = 0;
  virtual bool DirectoryExists(std::u16string_view path) = 0;
  virtual int32_t CreateDirectory(std::u16string_view path) = 0;
};

}  // namespace SASM
