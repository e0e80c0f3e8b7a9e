// The broker client's command line: one argument a line of the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/MString.h"
#include "host/BrokerClientOptions.h"

using namespace SASM;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::u16string> commandLine;
  const char* text = reinterpret_cast<const char*>(data);
  size_t start = 0;
  for (size_t at = 0; at <= size; ++at) {
    if (at < size && data[at] != '\n') continue;
    commandLine.push_back(MString::FromUtf8(text + start, static_cast<int32_t>(at - start)).ToU16());
    start = at + 1;
  }
  BrokerClientOptions options;
  const bool parsed = options.Parse(commandLine);
  if (parsed != options.error.empty() || options.error.find('\n') != std::string::npos) std::abort();
  if (!parsed) return 0;
  using Mode = BrokerClientOptions::Mode;
  // A method's arguments are what follows its name, whatever they look like.
  if (options.mode == Mode::Call) {
    if (options.method.empty() || options.args.size() >= commandLine.size()) std::abort();
    for (size_t i = 0; i < options.args.size(); ++i) {
      if (options.args[options.args.size() - 1 - i] != commandLine[commandLine.size() - 1 - i]) std::abort();
    }
  }
  if (options.mode == Mode::List && !options.method.empty()) std::abort();
  return 0;
}
