#pragma once
// Command line of the broker client. Switches come first; the first word that
// is not one names the method, and everything after it is the method's
// arguments, so that "-1" there is a number.
#include <string>
#include <vector>

namespace SASM {

struct BrokerClientOptions {
  enum class Mode { Call, List, Help, RegistrationOnly, Download };

  Mode mode = Mode::Call;
  std::u16string method;
  std::vector<std::u16string> args;
  std::u16string serverPath;  // -register HOSTPATH
  bool unregister = false;    // -unregister, after the call
  std::u16string proxyPath;   // -proxy DLL, registered for the call alone
  std::u16string downloadUrl;   // -download URL NAME: a whole add-on download
  std::u16string downloadName;  // stored under this name; "-" abandons it
  std::string error;          // one line when parsing failed

  // False with error set on an unknown switch, a switch without its argument,
  // -list with a method, or nothing to do.
  bool Parse(const std::vector<std::u16string>& commandLine);
  static const char* Usage();
};

}  // namespace SASM
