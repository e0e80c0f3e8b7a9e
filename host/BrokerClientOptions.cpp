#include "host/BrokerClientOptions.h"

#include "host/BrokerCallArguments.h"

namespace SASM {

const char* BrokerClientOptions::Usage() {
  return "usage: LumenBrokerClient [-register HOSTPATH] [-proxy DLL] [-unregister] METHOD [ARG...]\n"
         "       LumenBrokerClient -list\n"
         "       LumenBrokerClient -register HOSTPATH | -unregister\n"
         "       LumenBrokerClient [-register HOSTPATH] [-proxy DLL] -download URL NAME\n"
         "  Calls one method of the broker server by name and prints hresult=0x... and then name=value for\n"
         "  each out value. ARG per parameter the method reads: text, a number (decimal or 0x hex), or bytes\n"
         "  as hex digits, \"null\" or @FILE. Parameters with a default may be left off.\n"
         "  -list        print every method with its parameters\n"
         "  -register    register the server run by the host at HOSTPATH (before the call)\n"
         "  -unregister  remove the server's registration (after the call)\n"
         "  -download    open an add-on download, read it to the end with a progress line per read, and close\n"
         "               it under NAME (\"DIGEST#\" before it for a digest, \"-\" to abandon it)\n"
         "  -proxy       register the proxy DLL for the call only; for Wine, whose automation marshaller\n"
         "               refuses the interface\n"
         "  Exit code: 0 the method succeeded, 1 it failed, 2 bad input, 3 the broker could not be reached.\n";
}

bool BrokerClientOptions::Parse(const std::vector<std::u16string>& commandLine) {
  size_t i = 0;
  for (; i < commandLine.size(); ++i) {
    const std::u16string& arg = commandLine[i];
    if (arg.empty() || arg[0] != u'-') break;
    auto value = [&](std::u16string& out) {
      if (i + 1 >= commandLine.size()) {
        error = "missing argument after " + BrokerCallArguments::Ascii(arg);
        return false;
      }
      out = commandLine[++i];
      return true;
    };
    if (arg == u"-list")
      mode = Mode::List;
    else if (arg == u"-help" || arg == u"-h")
      mode = Mode::Help;
    else if (arg == u"-unregister")
      unregister = true;
    else if (arg == u"-register") {
      if (!value(serverPath)) return false;
    } else if (arg == u"-proxy") {
      if (!value(proxyPath)) return false;
    } else if (arg == u"-download") {
      if (!value(downloadUrl) || !value(downloadName)) return false;
    } else {
      error = "unknown switch " + BrokerCallArguments::Ascii(arg);
      return false;
    }
  }
  if (mode == Mode::Help) return true;
  if (i < commandLine.size()) {
    method = commandLine[i];
    args.assign(commandLine.begin() + static_cast<std::ptrdiff_t>(i) + 1, commandLine.end());
  }
  if (!downloadUrl.empty()) {
    if (!method.empty() || mode == Mode::List) {
      error = "-download takes no method";
      return false;
    }
    mode = Mode::Download;
    return true;
  }
  if (mode == Mode::List && !method.empty()) {
    error = "-list takes no method";
    return false;
  }
  if (mode == Mode::Call && method.empty()) {
    if (serverPath.empty() && !unregister) {
      error = "no method named";
      return false;
    }
    mode = Mode::RegistrationOnly;
  }
  return true;
}

}  // namespace SASM
