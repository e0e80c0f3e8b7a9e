#pragma once
// The registry entries that make an installed kind known: the Add/Remove
// Programs entry, the inventory values and the browsers' plug-in entry. Each
// write sequence stops at its first failure, which is reported with 1035.
#include <cstdint>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;

class ControlRegistration {
 public:
  static constexpr char16_t kUninstallPrefix[] =
      u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ";
  static constexpr char16_t kImageExecutionRoot[] =
      u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\";
  static constexpr char16_t kPluginsRoot[] = u"SOFTWARE\\MozillaPlugins";
  // Written to the Uninstall entry when the payload's size is unknown.
  static constexpr uint32_t kDefaultEstimatedSize = 18432;

  ControlRegistration(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  // The prefix followed by "ActiveX", "NPAPI" or "PPAPI"; the bare prefix for any other kind.
  static MString GetUninstallEntryKey(uint32_t kind);
  // Entries of earlier versions, only ever deleted: "Plugin", "Pepper" or nothing.
  static MString GetOldUninstallKey(uint32_t kind);
  static MString GetCompatibilityKey();
  // The plug-in root, "\" and the vendor's plug-in id.
  static MString GetPluginKey();
  static MString GetImageExecutionKey(const MString& name);

  bool WriteUninstallEntry(uint32_t kind, const MString& uninstallerPath);
  // The inventory chain; the exception-chain step runs after it whatever happened.
  bool WriteInventory(const MString& playerPath, const MString& uninstallerPath, uint32_t kind);
  bool WritePluginRegistry(const MString& path);
  bool DeleteImageExecutionKey(const MString& name);

  // What removal needs of the plug-in entry: its path as removal reads it, and the key's deletion status.
  bool ReadPluginPath(MString& path);
  int32_t DeletePluginRegistry();

 private:
  // Payload size in KiB, or the default when the payload can't be measured.
  uint32_t EstimatedSize();
  bool WriteExceptionChainValues(uint32_t kind);

  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
