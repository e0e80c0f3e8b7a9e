#pragma once
// Packages unpacked with zlib, linked statically.
#include "delivery/IUnpacker.h"

namespace SASM {

class ZlibUnpacker : public IUnpacker {
 public:
  bool Uncompress(uint8_t* output, uint32_t& size, const uint8_t* input, uint32_t inputSize) override;
};

}  // namespace SASM
