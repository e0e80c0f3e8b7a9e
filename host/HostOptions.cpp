#include "host/HostOptions.h"

#include "engine/ProductKind.h"

namespace SASM {
namespace {

std::string Narrow(const std::u16string& text) {
  std::string out;
  for (char16_t c : text) out.push_back(c < 128 ? static_cast<char>(c) : '?');
  return out;
}

bool ParseNumber(const std::u16string& text, uint32_t& value) {
  if (text.empty()) return false;
  uint64_t result = 0;
  size_t i = 0;
  int base = 10;
  if (text.size() > 2 && text[0] == u'0' && (text[1] == u'x' || text[1] == u'X')) {
    base = 16;
    i = 2;
  }
  for (; i < text.size(); ++i) {
    char16_t c = text[i];
    int digit;
    if (c >= u'0' && c <= u'9') digit = c - u'0';
    else if (base == 16 && c >= u'a' && c <= u'f') digit = c - u'a' + 10;
    else if (base == 16 && c >= u'A' && c <= u'F') digit = c - u'A' + 10;
    else return false;
    result = result * base + digit;
    if (result > 0xFFFFFFFFu) return false;
  }
  value = static_cast<uint32_t>(result);
  return true;
}

}  // namespace

const char* HostOptions::Usage() {
  return "usage: LumenUtilHost [-lists] [-settings FILE] [-module FILE] [-activex] [-npapi] [-ppapi] [-release]\n"
         "                     [-flags N] [-source N] [-help]\n"
         "       LumenUtilHost -install [KIND...] -player PATH -uninstaller PATH [-uninstall-entry] [WINDOW...]\n"
         "       LumenUtilHost -uninstall [KIND...] -directory DIR [WINDOW...]\n"
         "       LumenUtilHost -maintain [KIND...] -directory DIR [WINDOW...]\n"
         "       LumenUtilHost -update [KIND...] [WINDOW...]\n"
         "       LumenUtilHost -install|-uninstall -silent KIND... [...]\n"
         "       LumenUtilHost -conflicts KIND... [-source N] [...]\n"
         "  WINDOW: [-auto [SCRIPT]] [-timeout MS] [-shots DIR]\n"
         "  -lists     load the engine's lists from the settings and print them with the message log (default)\n"
         "  -install   open the installer window; registers each selected kind for the files at the given paths\n"
         "  -uninstall open the uninstaller window; removes each selected kind and its files from DIR\n"
         "  -maintain  open the maintenance window; its UNINSTALL removes as -uninstall does\n"
         "  -update    open the update offer\n"
         "  -silent    -install and -uninstall without the window: do the work and print the message log\n"
         "  -auto      click through the window as a person would; SCRIPT is steps joined by commas:\n"
         "             tick label right left uninstall reinstall done close end wait=MS (default: the mode's own)\n"
         "  -timeout   give up an unattended run after MS milliseconds (default 30000) with exit code 10\n"
         "  -shots     save a PNG of the window's client area in DIR at each step of the flow\n"
         "  -conflicts print the running processes that stand in the way of the selected kinds\n"
         "  KIND: -activex -npapi -ppapi, or the settings' Host.Flags; the window modes print each\n"
         "        Notify call and each answer that the panels ask for, one line each\n"
         "  -Embedding run the broker server (as started by COM)\n";
}

bool HostOptions::Parse(const std::vector<std::u16string>& args) {
  for (size_t i = 0; i < args.size(); ++i) {
    const std::u16string& arg = args[i];
    auto value = [&](std::u16string& out) {
      if (i + 1 >= args.size()) {
        error = "missing argument after " + Narrow(arg);
        return false;
      }
      out = args[++i];
      return true;
    };
    auto number = [&](uint32_t& out) {
      std::u16string text;
      if (!value(text)) return false;
      if (!ParseNumber(text, out)) {
        error = "not a number after " + Narrow(arg) + ": " + Narrow(text);
        return false;
      }
      return true;
    };
    auto addFlag = [&](uint32_t flag) {
      flags |= flag;
      flagsGiven = true;
    };
    if (arg == u"-lists") mode = Mode::Lists;
    else if (arg == u"-Embedding" || arg == u"/Embedding" || arg == u"-broker") mode = Mode::Broker;
    else if (arg == u"-help" || arg == u"/?" || arg == u"-h") mode = Mode::Help;
    else if (arg == u"-install") mode = Mode::Install;
    else if (arg == u"-conflicts") mode = Mode::Conflicts;
    else if (arg == u"-uninstall") mode = Mode::Uninstall;
    else if (arg == u"-maintain") mode = Mode::Maintain;
    else if (arg == u"-update") mode = Mode::Update;
    else if (arg == u"-silent") silent = true;
    else if (arg == u"-uninstall-entry") writeUninstallEntry = true;
    else if (arg == u"-activex") addFlag(ProductKind::kActiveX);
    else if (arg == u"-npapi") addFlag(ProductKind::kNpapi);
    else if (arg == u"-ppapi") addFlag(ProductKind::kPpapi);
    else if (arg == u"-release") addFlag(HostFlag::kReleasePlayer);
    else if (arg == u"-auto") {
      unattended = true;
      // The script is optional: a next argument that is a switch is not one.
      if (i + 1 < args.size() && !args[i + 1].empty() && args[i + 1][0] != u'-') script = args[++i];
    } else if (arg == u"-timeout") {
      if (!number(timeoutMs)) return false;
      if (timeoutMs == 0) {
        error = "-timeout needs a number above 0";
        return false;
      }
    } else if (arg == u"-shots") {
      if (!value(shotsDirectory)) return false;
    } else if (arg == u"-settings") {
      if (!value(settingsPath)) return false;
    } else if (arg == u"-module") {
      if (!value(modulePath)) return false;
    } else if (arg == u"-player") {
      if (!value(playerPath)) return false;
    } else if (arg == u"-uninstaller") {
      if (!value(uninstallerPath)) return false;
    } else if (arg == u"-directory") {
      if (!value(directory)) return false;
    } else if (arg == u"-flags") {
      if (!number(flags)) return false;
      flagsGiven = true;
    } else if (arg == u"-source") {
      if (!number(installSource)) return false;
      sourceGiven = true;
    } else {
      error = "unknown switch: " + Narrow(arg);
      return false;
    }
  }
  bool anyKind = flags & (ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi);
  if (silent && mode != Mode::Install && mode != Mode::Uninstall) {
    error = "-silent goes with -install or -uninstall";
    return false;
  }
  if (!Windowed() && (unattended || timeoutMs != 0 || !shotsDirectory.empty())) {
    error = "-auto, -timeout and -shots need a window: -install, -uninstall, -maintain or -update";
    return false;
  }
  if (mode == Mode::Conflicts && !anyKind) {
    error = "-conflicts needs a kind: -activex, -npapi or -ppapi";
    return false;
  }
  if (mode == Mode::Uninstall || mode == Mode::Maintain) {
    // The window's kinds may come from the settings, which are read later.
    if (silent && !anyKind) {
      error = "-uninstall needs a kind: -activex, -npapi or -ppapi";
      return false;
    }
    if (directory.empty()) {
      error = std::string(mode == Mode::Uninstall ? "-uninstall" : "-maintain") + " needs -directory DIR";
      return false;
    }
  }
  if (mode == Mode::Install) {
    if (silent && !anyKind) {
      error = "-install needs a kind: -activex, -npapi or -ppapi";
      return false;
    }
    if (playerPath.empty() || uninstallerPath.empty()) {
      error = "-install needs -player PATH and -uninstaller PATH";
      return false;
    }
  }
  return true;
}

bool HostOptions::Windowed() const {
  switch (mode) {
    case Mode::Install:
    case Mode::Uninstall:
      return !silent;
    case Mode::Maintain:
    case Mode::Update:
      return true;
    default:
      return false;
  }
}

uint32_t HostOptions::EffectiveTimeoutMs() const {
  if (timeoutMs != 0) return timeoutMs;
  return unattended ? kDefaultAutoTimeoutMs : 0;
}

}  // namespace SASM
