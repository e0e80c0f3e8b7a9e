#pragma once
// What is installed and at what version: the product keys under the machine
// hive, read and compared with this build's version.
#include <cstdint>

#include "engine/MString.h"
#include "install/ReportingRegistry.h"

namespace SASM {

class HostCallbacks;

class ProductInventory {
 public:
  static constexpr char16_t kBaseKey[] = u"Software\\Halcyonics\\LumenPlayer";
  static constexpr char16_t kSafeVersionsKey[] = u"Software\\Halcyonics\\LumenPlayer\\SafeVersions";
  // The major version followed by ".0": changes with the build's version.
  static constexpr char16_t kSafeVersionName[] = u"28.0";

  // What CompareInstalledVersion answers.
  enum VersionState : int32_t { kNotInstalled = 0, kOlder = 1, kSame = 2, kNewer = 3 };

  ProductInventory(HostCallbacks& host, IRegistry& registry) : registry_(host, registry) {}

  // The base key followed by the kind's word; any other kind gives the base key.
  static MString GetProductKey(uint32_t kind);
  static MString GetReleaseTypeKey(uint32_t kind);

  // PlayerPath and then UninstallerPath; true only when both were read.
  bool ReadPlayerPaths(uint32_t kind, MString& playerPath, MString& uninstallerPath);
  VersionState CompareInstalledVersion(uint32_t kind);
  // True unless the safe-version value names a revision above this build's.
  bool IsSafeVersion();
  // The release type key of the last kind set decides; no kind or no key matches anything.
  bool ReleaseTypeMatches(uint32_t kinds, uint32_t expected);
  // 1 when a is higher, -1 when b is, 0 when the four numbers are equal.
  static int32_t CompareVersionStrings(const MString& a, const MString& b);

  bool DeleteProductKey(uint32_t kind);
  // Every step runs; the result is the conjunction of those that count.
  bool CleanRegistry(uint32_t kind);
  bool DeleteSafeVersions();

 private:
  ReportingRegistry registry_;
};

}  // namespace SASM
