#pragma once
// Where the player and its data live, composed over the platform seams.
#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class SystemPaths {
 public:
  explicit SystemPaths(const Platform& platform) : platform_(platform) {}

  // The directory of 32-bit system files. On a 64-bit process the plain system
  // directory answers, as the WOW64 test fails there.
  bool GetSystem32Path(MString& path) const;
  // Roaming (CSIDL 26) followed by "\Halcyonics\Lumen Player\", the vendor settings directory and "\bin".
  bool GetProductDirectory(MString& path) const;

 private:
  Platform platform_;
};

}  // namespace SASM
