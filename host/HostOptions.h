#pragma once
// Command line of the reference host.
#include <cstdint>
#include <string>
#include <vector>

namespace SASM {

struct HostOptions {
  enum class Mode { Lists, Broker, Install, Conflicts, Uninstall, Help };

  Mode mode = Mode::Lists;
  std::u16string settingsPath;  // -settings FILE; default beside the executable
  std::u16string modulePath;    // -module FILE; default LumenUtil.dll beside the executable
  uint32_t flags = 0;           // -activex -npapi -ppapi -release, or -flags N
  uint32_t installSource = 0;   // -source N
  std::u16string playerPath;       // -player PATH, for -install
  std::u16string uninstallerPath;  // -uninstaller PATH, for -install
  bool writeUninstallEntry = false;  // -uninstall-entry
  std::u16string directory;          // -directory DIR, for -uninstall: where the system files are
  std::string error;            // one line when parsing failed

  // False with error set on an unknown switch, a missing or bad argument, an
  // -install that lacks a kind or one of its two paths, a -conflicts without a kind, or an
  // -uninstall that lacks a kind or its directory.
  bool Parse(const std::vector<std::u16string>& args);
  static const char* Usage();
};

}  // namespace SASM
