#pragma once
// A file that a save dialog has chosen and nobody has opened yet: the values
// CreateFileW will be given when the first write or seek comes.
#include <cstdint>
#include <optional>
#include <string>

namespace SASM {

struct DeferredOpen {
  uint32_t desiredAccess = 0;
  uint32_t shareMode = 0;
  uint32_t creationDisposition = 0;
  uint32_t flagsAndAttributes = 0;
  // The enterprise identity the file is to be protected to; none when empty.
  std::optional<std::u16string> identity;
};

}  // namespace SASM
