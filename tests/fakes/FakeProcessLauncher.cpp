#include "tests/fakes/FakeProcessLauncher.h"

namespace SASM {

std::vector<std::u16string> FakeProcessLauncher::CommandLines() const {
  std::vector<std::u16string> lines;
  for (const Run& run : runs_) lines.push_back(run.commandLine);
  return lines;
}

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

bool FakeProcessLauncher::ShellExecuteAndWait(std::u16string_view file, std::u16string_view parameters) {
  shellRuns_.push_back({std::u16string(file), std::u16string(parameters)});
  return true;
}

}  // namespace SASM
