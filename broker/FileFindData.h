#pragma once
// The parts of a find entry the broker hands on: the leaf name and attributes.
#include <cstdint>
#include <string>

namespace SASM {

struct FileFindData {
  uint32_t attributes = 0;
  std::u16string leafName;
};

}  // namespace SASM
