#pragma once
// GetFileAttributesExW at the standard level, times and size in the halves
// BrokerGetFileAttributesEx hands out.
#include <cstdint>

namespace SASM {

struct FileAttributeData {
  uint32_t attributes = 0;
  uint32_t creationTimeLow = 0;
  uint32_t creationTimeHigh = 0;
  uint32_t lastAccessTimeLow = 0;
  uint32_t lastAccessTimeHigh = 0;
  uint32_t lastWriteTimeLow = 0;
  uint32_t lastWriteTimeHigh = 0;
  uint32_t sizeHigh = 0;
  uint32_t sizeLow = 0;
};

}  // namespace SASM
