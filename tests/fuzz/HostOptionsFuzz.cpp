// The reference host's command line: one argument a line of the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/MString.h"
#include "engine/ProductKind.h"
#include "host/HostOptions.h"

using namespace SASM;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::u16string> args;
  const char* text = reinterpret_cast<const char*>(data);
  size_t start = 0;
  for (size_t at = 0; at <= size; ++at) {
    if (at < size && data[at] != '\n') continue;
    args.push_back(MString::FromUtf8(text + start, static_cast<int32_t>(at - start)).ToU16());
    start = at + 1;
  }
  HostOptions options;
  const bool parsed = options.Parse(args);
  // Failure always explains itself in one line; success never does.
  if (parsed != options.error.empty() || options.error.find('\n') != std::string::npos) std::abort();
  if (!parsed) return 0;
  const bool anyKind = options.flags & (ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi);
  using Mode = HostOptions::Mode;
  // A window run may take its kinds from the settings; the windowless ones must name them.
  const bool needsKind = options.mode == Mode::Conflicts ||
                         (options.silent && (options.mode == Mode::Install || options.mode == Mode::Uninstall));
  if (needsKind && !anyKind) std::abort();
  if (options.mode == Mode::Install && (options.playerPath.empty() || options.uninstallerPath.empty())) std::abort();
  if ((options.mode == Mode::Uninstall || options.mode == Mode::Maintain) && options.directory.empty()) std::abort();
  if (!options.Windowed() && (options.unattended || options.timeoutMs || !options.shotsDirectory.empty())) std::abort();
  return 0;
}
