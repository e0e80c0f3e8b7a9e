#pragma once
// Protection of installed files: the read-only attribute and grants for the
// well-known accounts; and the same grants for the control's registry keys.
#include <cstdint>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class FileProtection {
 public:
  explicit FileProtection(const Platform& platform) : platform_(platform) {}

  // With on: read-only unless already so, then the grants; either failing gives false.
  // Without: the grants go first, then read-only is cleared.
  bool ProtectFile(const MString& path, bool on);
  // Lets every account of the grant table read the control's class, interface and
  // library keys. Keys that don't exist are passed over.
  void RepairRegistryAccess();

 private:
  bool SetReadOnly(const MString& path, bool on);

  Platform platform_;
};

}  // namespace SASM
