#include "delivery/win32/ZlibUnpacker.h"

#include <zlib.h>

namespace SASM {

bool ZlibUnpacker::Uncompress(uint8_t* output, uint32_t& size, const uint8_t* input, uint32_t inputSize) {
  uLongf produced = size;
  if (uncompress(output, &produced, input, inputSize) != Z_OK) return false;
  size = static_cast<uint32_t>(produced);
  return true;
}

}  // namespace SASM
