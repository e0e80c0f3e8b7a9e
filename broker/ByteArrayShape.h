#pragma once
// What an automation byte array says of itself; only the one dimension's
// bounds are looked at.
#include <cstdint>

namespace SASM {

struct ByteArrayShape {
  uint32_t dimensions = 0;
  uint32_t elementSize = 0;
  int32_t lowerBound = 0;
  uint32_t count = 0;
};

}  // namespace SASM
