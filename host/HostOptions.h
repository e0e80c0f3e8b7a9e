#pragma once
// Command line of the reference host.
#include <cstdint>
#include <string>
#include <vector>

namespace SASM {

struct HostOptions {
  enum class Mode { Lists, Broker, Install, Conflicts, Uninstall, Maintain, Update, Help };
  static constexpr uint32_t kDefaultAutoTimeoutMs = 30000;

  Mode mode = Mode::Lists;
  std::u16string settingsPath;  // -settings FILE; default beside the executable
  std::u16string modulePath;    // -module FILE; default LumenUtil.dll beside the executable
  uint32_t flags = 0;           // -activex -npapi -ppapi -release, or -flags N
  uint32_t installSource = 0;   // -source N
  bool flagsGiven = false;      // without them the settings' Host.Flags answer
  bool sourceGiven = false;     // without it Host.InstallSource answers
  std::u16string playerPath;       // -player PATH, for -install
  std::u16string uninstallerPath;  // -uninstaller PATH, for -install
  bool writeUninstallEntry = false;  // -uninstall-entry
  std::u16string directory;          // -directory DIR, for -uninstall and -maintain: where the system files are
  bool silent = false;               // -silent: -install and -uninstall do their work without the window
  bool unattended = false;           // -auto [SCRIPT]: the clicks of a person are posted to the window
  std::u16string script;             // SCRIPT of -auto; empty for the mode's own
  uint32_t timeoutMs = 0;            // -timeout MS: the whole unattended run; 0 is the default with -auto
  std::u16string shotsDirectory;     // -shots DIR: a picture of the window at each step
  std::string error;            // one line when parsing failed

  // False with error set on an unknown switch, a missing or bad argument, an
  // -install that lacks one of its two paths, a -conflicts without a kind, an
  // -uninstall or -maintain without its directory, a -silent -install or
  // -uninstall without a kind, or a window switch without a window mode.
  bool Parse(const std::vector<std::u16string>& args);
  // The modes that open the installer window.
  bool Windowed() const;
  // The bound of an unattended run: -timeout, else the default with -auto, else 0 (none).
  uint32_t EffectiveTimeoutMs() const;
  static const char* Usage();
};

}  // namespace SASM
