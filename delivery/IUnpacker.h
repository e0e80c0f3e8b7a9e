#pragma once
// Seam for the zlib stream of a package.
#include <cstdint>

namespace SASM {

class IUnpacker {
 public:
  virtual ~IUnpacker() = default;
  // As zlib's uncompress: on entry size is the room at output, on success the
  // bytes written there. False for a corrupt or oversized stream.
  virtual bool Uncompress(uint8_t* output, uint32_t& size, const uint8_t* input, uint32_t inputSize) = 0;
};

}  // namespace SASM
