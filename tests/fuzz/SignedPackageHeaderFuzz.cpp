// The verified content of a package, up to the point where it goes to uncompress:
// magic, declared size and the ten-times bound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "delivery/SignedPackage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  uint32_t unpacked = 0;
  const SASM::SignedPackage::Header header = SASM::SignedPackage::ReadHeader(data, size, unpacked);
  if (header == SASM::SignedPackage::Header::Good) {
    // What uncompress would be handed: a stream after the header, and an output under the bound.
    if (size < SASM::SignedPackage::kHeaderSize) std::abort();
    if (static_cast<uint64_t>(unpacked) >= SASM::SignedPackage::kBoundFactor * size) std::abort();
  }
  return 0;
}
