#pragma once
// What removal clears of a kind's registration beyond its own keys: earlier MSI
// installs through the system's MSI tool, the Add/Remove Programs entry, and
// the ActiveX class keys. Nothing here reports; every step tolerates a missing key.
#include <cstdint>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/Platform.h"

namespace SASM {

class InstallEngine;

class UninstallCleanup {
 public:
  static constexpr char16_t kMsiTool[] = u"msiexec.exe";
  static constexpr char16_t kMsiRemoveSwitches[] = u"/q /X ";

  // Where an MSI product registers: each prefix followed by the product code.
  struct MsiRecord {
    MString firstPrefix;
    MString secondPrefix;
  };

  explicit UninstallCleanup(const Platform& platform) : platform_(platform) {}

  // The tool starts, and is waited for, only when one of the two keys opens. Its
  // exit code isn't read, so a failed removal goes unnoticed.
  void RemoveMsiProduct(const MsiRecord& record, const MString& toolDirectory, const MString& productCode);
  // The kind's MSI products by the engine's lists, then its Uninstall entry.
  void RemoveUninstallEntries(uint32_t kind, const InstallEngine& engine);
  // The ActiveX class families under the machine hive; true when each key went or wasn't there.
  bool RemoveActiveXClasses();

 private:
  static const MStringList* ProductCodes(uint32_t kind, const InstallEngine& engine);

  Platform platform_;
};

}  // namespace SASM
