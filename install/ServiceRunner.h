#pragma once
// One of the two service executables (update, feedback) and the switches it is
// run with: each run waits for the executable and judges its exit code.
#include <cstdint>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class HostCallbacks;

class ServiceRunner {
 public:
  enum class Service { Update, Feedback };

  static constexpr uint32_t kRunTimeoutMs = 600000;
  static constexpr char16_t kTaskArguments[] = u"-check pepperplugin";

  ServiceRunner(Service service, const MString& executablePath, HostCallbacks& host, const Platform& platform);

  // The executable, a blank and the switch, unquoted; true when it ended with exit code 0.
  bool RunServiceCommand(const char16_t* switchText);
  // The same run for the feedback service's removal: a failed start reports 1739 with
  // the error in decimal, and the exit code isn't judged. True when it started.
  bool RunServiceCommandUnjudged(const char16_t* switchText);
  bool RunUninstallCommand() { return RunServiceCommand(u"-uninstall"); }
  bool RunAnalyticsCommand() { return RunServiceCommand(u"-enableAnalytics"); }
  // Modes 0 to 4; any other reports 1118 and fails.
  bool SetUpdateMode(int32_t mode);

  HostCallbacks* host;
  MString executablePath;
  MString serviceName;
  MString displayName;

 private:
  // 0 or the start's system error; exitCode as the platform read it.
  int32_t Run(const char16_t* switchText, uint32_t& exitCode);

  Platform platform_;
};

}  // namespace SASM
