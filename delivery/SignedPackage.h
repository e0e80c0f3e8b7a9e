#pragma once
// The content of a verified package: "Troy", the unpacked size (32-bit little
// endian) and a zlib stream of the rest.
#include <cstddef>
#include <cstdint>

namespace SASM {

class SignedPackage {
 public:
  static constexpr size_t kHeaderSize = 8;
  // The unpacked size must stay below this many times the whole content's size.
  static constexpr uint64_t kBoundFactor = 10;

  enum class Header { Good, WrongMagic, BoundExceeded };

  // Reads the header of content. A content too short to hold the size field
  // cannot be unpacked and counts as past the bound.
  static Header ReadHeader(const uint8_t* content, size_t size, uint32_t& unpackedSize);
};

}  // namespace SASM
