#include "tests/fakes/FakeProcessLauncher.h"

namespace SASM {

int32_t FakeProcessLauncher::RunAndWait(std::u16string_view commandLine, uint32_t creationFlags, uint32_t timeoutMs,
                                        uint32_t& exitCode) {
  std::u16string line(commandLine);
  runs_.push_back({line, creationFlags, timeoutMs});
  auto failure = startFailures_.find(line);
  if (failure != startFailures_.end()) return failure->second;
  auto code = exitCodes_.find(line);
  exitCode = code == exitCodes_.end() ? 0 : code->second;
  return 0;
}

}  // namespace SASM
