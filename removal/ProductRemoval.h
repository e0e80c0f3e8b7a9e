#pragma once
// The shim's removal operations: a kind's registration, files, services and
// task go, each step going on after a failure and keeping a combined result.
#include <cstdint>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;
class MStringList;

class ProductRemoval {
 public:
  static constexpr char16_t kUpdateServiceFolder[] = u"Halcyons\\Lumen\\";

  ProductRemoval(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  bool UninstallProduct(uint32_t kind, const MString& file, uint8_t removeSafeVersions);
  bool RemoveProductKind(uint32_t kind, const MString& directory, uint8_t a, uint8_t b);
  bool RemoveUpdateService(const MString& directory);
  bool RemoveNamedFiles(uint32_t kinds, const MString& directory);
  bool RemoveOneFile(const MString& name, const MString& path);
  bool RemovePatternFiles(uint32_t kinds, const MString& directory);

 private:
  // Where the kind was registered when its product key can't tell.
  void ReadFallbackPaths(uint32_t kind, MString& playerPath, MString& uninstallerPath);
  // The applet and the settings manager in the given directory, for the older OS classes.
  bool RemoveSystemFiles(const MString& directory);
  // Each pattern's last match in the system directory listing, handled by kind.
  void RemoveMatches(const MStringList* patterns, uint32_t kind);

  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
