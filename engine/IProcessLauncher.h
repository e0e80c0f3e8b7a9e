#pragma once
// Seam for commands whose end the caller waits for: a command line started
// directly, and a program started through the shell.
#include <cstdint>
#include <string_view>

namespace SASM {

namespace ProcessCreation {
constexpr uint32_t kNoWindowDefaultErrorMode = 0xC000000;  // CREATE_NO_WINDOW | CREATE_DEFAULT_ERROR_MODE
}  // namespace ProcessCreation

namespace ProcessWait {
constexpr uint32_t kInfinite = 0xFFFFFFFF;
// The exit code of a process that hasn't ended.
constexpr uint32_t kStillActive = 259;
}  // namespace ProcessWait

class IProcessLauncher {
 public:
  virtual ~IProcessLauncher() = default;
  // Starts the command line with no handle inheritance and the creation flags, waits
  // at most timeoutMs and then reads the exit code whatever the wait gave. Returns 0,
  // or the system error of a start that failed.
  virtual int32_t RunAndWait(std::u16string_view commandLine, uint32_t creationFlags, uint32_t timeoutMs,
                             uint32_t& exitCode) = 0;
  // Through the shell, owned by the foreground window, shown normally; waits for the
  // process without limit. False when nothing was started.
  virtual bool ShellExecuteAndWait(std::u16string_view file, std::u16string_view parameters) = 0;
};

}  // namespace SASM
