#include "delivery/SignedPackage.h"

#include <cstring>

namespace SASM {

SignedPackage::Header SignedPackage::ReadHeader(const uint8_t* content, size_t size, uint32_t& unpackedSize) {
  unpackedSize = 0;
  if (size < 4 || std::memcmp(content, "Troy", 4) != 0) return Header::WrongMagic;
  if (size < kHeaderSize) return Header::BoundExceeded;
  unpackedSize = static_cast<uint32_t>(content[4]) | static_cast<uint32_t>(content[5]) << 8 |
                 static_cast<uint32_t>(content[6]) << 16 | static_cast<uint32_t>(content[7]) << 24;
  // In 64 bits: ten times a content of 4 GiB still compares truly.
  if (static_cast<uint64_t>(unpackedSize) >= kBoundFactor * static_cast<uint64_t>(size)) return Header::BoundExceeded;
  return Header::Good;
}

}  // namespace SASM
