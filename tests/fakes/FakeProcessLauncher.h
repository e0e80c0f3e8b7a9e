#pragma once
// Commands for native tests: each run is recorded and answers the exit code
// set for its command line (0 otherwise), or a start failure.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IProcessLauncher.h"

namespace SASM {

class FakeProcessLauncher : public IProcessLauncher {
 public:
  struct Run {
    std::u16string commandLine;
    uint32_t creationFlags;
    uint32_t timeoutMs;
    bool operator==(const Run&) const = default;
  };
  struct ShellRun {
    std::u16string file;
    std::u16string parameters;
    bool operator==(const ShellRun&) const = default;
  };

  void SetExitCode(std::u16string commandLine, uint32_t exitCode) { exitCodes_[std::move(commandLine)] = exitCode; }
  void FailStart(std::u16string commandLine, int32_t error) { startFailures_[std::move(commandLine)] = error; }

  const std::vector<Run>& Runs() const { return runs_; }
  // Just the command lines, for the common expectation.
  std::vector<std::u16string> CommandLines() const {
    std::vector<std::u16string> lines;
    for (const Run& run : runs_) lines.push_back(run.commandLine);
    return lines;
  }
  const std::vector<ShellRun>& ShellRuns() const { return shellRuns_; }

  int32_t RunAndWait(std::u16string_view commandLine, uint32_t creationFlags, uint32_t timeoutMs,
                     uint32_t& exitCode) override {
    std::u16string line(commandLine);
    runs_.push_back({line, creationFlags, timeoutMs});
    if (auto failure = startFailures_.find(line); failure != startFailures_.end()) return failure->second;
    auto code = exitCodes_.find(line);
    exitCode = code == exitCodes_.end() ? 0 : code->second;
    return 0;
  }
  bool ShellExecuteAndWait(std::u16string_view file, std::u16string_view parameters) override {
    shellRuns_.push_back({std::u16string(file), std::u16string(parameters)});
    return true;
  }

 private:
  std::map<std::u16string, uint32_t> exitCodes_;
  std::map<std::u16string, int32_t> startFailures_;
  std::vector<Run> runs_;
  std::vector<ShellRun> shellRuns_;
};

}  // namespace SASM
