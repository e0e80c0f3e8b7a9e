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
         "       LumenUtilHost -install KIND... -player PATH -uninstaller PATH [-uninstall-entry] [...]\n"
         "       LumenUtilHost -conflicts KIND... [-source N] [...]\n"
         "       LumenUtilHost -uninstall KIND... -directory DIR [...]\n"
         "  -lists     load the engine's lists from the settings and print them with the message log (default)\n"
         "  -install   register each selected kind for the files at the given paths and print the message log\n"
         "  -conflicts print the running processes that stand in the way of the selected kinds\n"
         "  -uninstall remove each selected kind, its named and pattern files from DIR, and print the message log\n"
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
    if (arg == u"-lists") mode = Mode::Lists;
    else if (arg == u"-Embedding" || arg == u"/Embedding" || arg == u"-broker") mode = Mode::Broker;
    else if (arg == u"-help" || arg == u"/?" || arg == u"-h") mode = Mode::Help;
    else if (arg == u"-install") mode = Mode::Install;
    else if (arg == u"-conflicts") mode = Mode::Conflicts;
    else if (arg == u"-uninstall") mode = Mode::Uninstall;
    else if (arg == u"-uninstall-entry") writeUninstallEntry = true;
    else if (arg == u"-activex") flags |= ProductKind::kActiveX;
    else if (arg == u"-npapi") flags |= ProductKind::kNpapi;
    else if (arg == u"-ppapi") flags |= ProductKind::kPpapi;
    else if (arg == u"-release") flags |= HostFlag::kReleasePlayer;
    else if (arg == u"-settings") {
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
    } else if (arg == u"-source") {
      if (!number(installSource)) return false;
    } else {
      error = "unknown switch: " + Narrow(arg);
      return false;
    }
  }
  bool anyKind = flags & (ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi);
  if (mode == Mode::Conflicts && !anyKind) {
    error = "-conflicts needs a kind: -activex, -npapi or -ppapi";
    return false;
  }
  if (mode == Mode::Uninstall) {
    if (!anyKind) {
      error = "-uninstall needs a kind: -activex, -npapi or -ppapi";
      return false;
    }
    if (directory.empty()) {
      error = "-uninstall needs -directory DIR";
      return false;
    }
  }
  if (mode == Mode::Install) {
    if (!anyKind) {
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

}  // namespace SASM
