#pragma once
// A byte array argument of the shortcut family as it arrived: whether there
// was one, its shape, and its bytes while the caller holds them accessed.
#include <cstdint>

#include "broker/ByteArrayShape.h"

namespace SASM {

struct ShortcutByteArray {
  bool present = false;
  ByteArrayShape shape;
  // shape.count bytes; null when the array is absent or empty.
  const uint8_t* data = nullptr;

  // One dimension, elements of one byte, lower bound 0.
  bool IsWellFormed() const {
    return present && shape.dimensions == 1 && shape.elementSize == 1 && shape.lowerBound == 0;
  }
};

}  // namespace SASM
