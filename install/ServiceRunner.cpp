#include "install/ServiceRunner.h"

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/ProductKind.h"
#include "engine/Reporter.h"
#include "removal/NotifierTask.h"

namespace SASM {
namespace {

struct ServiceNames {
  const char16_t* serviceName;
  const char16_t* displayName;
};

constexpr ServiceNames kUpdateService = {u"CorvaLumenPlayerUpdateSvc", u"Corva Lumen Player Update Service"};
constexpr ServiceNames kFeedbackService = {u"CorvaLumenPlayerFeedbackSvc", u"Corva Lumen Player Feedback Service"};

struct UpdateMode {
  int32_t mode;
  const char16_t* first;
  const char16_t* second;  // null: one run
  bool refreshesTask;
};

// Mode 2 leaves the notifier task as it is, unlike the others.
constexpr UpdateMode kUpdateModes[] = {
    {0, u"-setSilentAutoUpdate", nullptr, true},
    {1, u"-uninstall", u"-setNotifyAutoUpdate", true},
    {2, u"-uninstall", u"-setDisableAutoUpdate", false},
    {3, u"-setNotifyAutoUpdate", nullptr, true},
    {4, u"-setDisableAutoUpdate", nullptr, true},
};

}  // namespace

ServiceRunner::ServiceRunner(Service service, const MString& path, HostCallbacks& owner, const Platform& platform)
    : host(&owner), executablePath(path), platform_(platform) {
  const ServiceNames& names = service == Service::Update ? kUpdateService : kFeedbackService;
  serviceName = MString(names.serviceName);
  displayName = MString(names.displayName);
}

int32_t ServiceRunner::Run(const char16_t* switchText, uint32_t& exitCode) {
  constexpr int32_t kNoLauncher = 2;  // as if the executable were missing
  MString commandLine = executablePath;
  commandLine.Append(u" ").Append(switchText);
  if (!platform_.launcher) return kNoLauncher;
  // A run past the timeout is judged by the code read then: still active, so failed. It isn't killed.
  return platform_.launcher->RunAndWait(commandLine.View(), ProcessCreation::kNoWindowDefaultErrorMode,
                                        kRunTimeoutMs, exitCode);
}

bool ServiceRunner::RunServiceCommand(const char16_t* switchText) {
  uint32_t exitCode = ProcessWait::kStillActive;
  if (Run(switchText, exitCode) != 0) {
    Reporter::Report(*host, Severity::kLogged, ErrorCode::kServiceCommandFailed);
    return false;
  }
  return exitCode == 0;
}

bool ServiceRunner::RunServiceCommandUnjudged(const char16_t* switchText) {
  uint32_t exitCode = ProcessWait::kStillActive;
  if (int32_t error = Run(switchText, exitCode)) {
    Reporter::ReportErrorDecimal(*host, Severity::kLogged, ErrorCode::kServiceUninstallNotStarted, error);
    return false;
  }
  return true;
}

bool ServiceRunner::SetUpdateMode(int32_t mode) {
  const UpdateMode* row = nullptr;
  for (const UpdateMode& candidate : kUpdateModes) {
    if (candidate.mode == mode) row = &candidate;
  }
  if (!row) {
    Reporter::Report(*host, Severity::kLogged, ErrorCode::kServiceCommandFailed);
    return false;
  }
  // Both runs of a two-switch mode happen, whatever the first gave.
  bool result = RunServiceCommand(row->first);
  if (row->second) result = RunServiceCommand(row->second) && result;
  if (!row->refreshesTask) return result;
  if (host->GetFlags() & ProductKind::kPpapi) {
    MString commandPath;
    host->GetTaskCommandPath(commandPath);
    // The task's outcome is its own; the mode's result stands.
    NotifierTask::CreateNotifierTask(commandPath, MString(kTaskArguments), *host, platform_);
  }
  return result;
}

}  // namespace SASM
