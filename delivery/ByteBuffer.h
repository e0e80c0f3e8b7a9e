#pragma once
// An owned block of bytes whose allocation may fail without throwing: sizes
// here come from downloads and files, so running out of memory is an answer.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace SASM {

class ByteBuffer {
 public:
  ByteBuffer() = default;
  ByteBuffer(ByteBuffer&&) noexcept = default;
  ByteBuffer& operator=(ByteBuffer&&) noexcept = default;

  // Replaces the content with size uninitialised bytes; false, and empty, when
  // they cannot be had. A size of 0 succeeds with an empty buffer.
  bool Allocate(size_t size) {
    reset();
    if (size == 0) return true;
    if (size > allocationCeiling) return false;
    bytes_.reset(new (std::nothrow) uint8_t[size]);
    if (!bytes_) return false;
    size_ = size;
    return true;
  }
  // Keeps only the first size bytes; never grows.
  void Shrink(size_t size) {
    if (size < size_) size_ = size;
  }
  void reset() {
    bytes_.reset();
    size_ = 0;
  }
  uint8_t* data() { return bytes_.get(); }
  const uint8_t* data() const { return bytes_.get(); }
  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  // Larger requests fail as an exhausted heap would. Tests lower it: a 64-bit
  // process, sanitised or not, grants more than a test can afford to touch.
  static inline size_t allocationCeiling = SIZE_MAX;

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  size_t size_ = 0;
};

}  // namespace SASM
