#pragma once
// Seam for the two task schedulers, told as steps: the caller walks its own
// sequence and the platform performs one call per step, keeping what the step
// took (service, folder, definition, trigger, action, work item) for the next.
// Results are HRESULTs.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace SASM {

// Everything a step may write, as data.
struct TaskDefinition {
  std::u16string name;
  std::u16string author;
  std::u16string description;
  std::u16string userName;
  std::u16string commandPath;
  std::u16string commandArguments;
  // Task service.
  std::u16string triggerId;
  std::u16string startBoundary;
  std::u16string repetitionInterval;
  std::u16string repetitionDuration;
  int32_t triggerType = 2;   // daily
  int16_t daysInterval = 1;
  int32_t actionType = 0;    // run a program
  int32_t compatibility = 2;
  bool startWhenAvailable = true;
  bool disallowStartIfOnBatteries = false;
  bool runOnlyIfNetworkAvailable = true;
  int32_t registrationFlags = 6;  // create or update
  int32_t logonType = 3;          // interactive token
  // Older scheduler.
  uint32_t workItemFlags = 9216;  // run only when logged on, run when connected to the internet
  uint16_t startMinute = 0;
};

enum class TaskStep : int32_t {
  // Task service.
  InitializeCom,
  InitializeSecurity,
  CreateTaskService,
  Connect,
  OpenRootFolder,
  FindTask,  // fails when the task is absent
  NewDefinition,
  TakeRegisteredDefinition,
  TakeSettings,
  SetStartWhenAvailable,
  SetCompatibility,
  SetDisallowStartIfOnBatteries,
  SetRunOnlyIfNetworkAvailable,
  TakeRegistrationInfo,
  SetAuthor,
  SetDescription,
  TakeTriggers,
  CountTriggers,  // the count is the step's answer
  TakeFirstTrigger,
  CreateTrigger,
  QueryDailyTrigger,
  SetTriggerId,
  SetStartBoundary,
  SetDaysInterval,
  TakeRepetition,
  SetRepetitionDuration,
  SetRepetitionInterval,
  TakeActions,
  ClearActions,
  CreateAction,
  QueryExecAction,
  SetPath,
  SetArguments,
  RegisterDefinition,
  DeleteTask,
  // Older scheduler.
  InitializeComLegacy,
  CreateLegacyScheduler,
  ActivateWorkItem,  // fails when the item is absent
  NewWorkItem,
  SetAccount,
  SetCreator,
  SetComment,
  SetApplicationName,
  SetWorkItemFlags,
  SetParameters,
  CountWorkItemTriggers,  // the count is the step's answer
  CreateWorkItemTrigger,
  UpdateFirstWorkItemTrigger,
  SaveWorkItem,
  DeleteWorkItem,
};

namespace TaskResult {
constexpr int32_t kOk = 0;
constexpr int32_t kFileNotFound = static_cast<int32_t>(0x80070002u);
constexpr int32_t kSecurityAlreadySet = static_cast<int32_t>(0x80010119u);  // RPC_E_TOO_LATE
constexpr int32_t kNotImplemented = static_cast<int32_t>(0x80004001u);
constexpr int32_t kFailed = static_cast<int32_t>(0x80004005u);
}  // namespace TaskResult

// One conversation with a scheduler; ending it releases what the steps took and
// uninitialises COM when a step initialised it.
class ITaskSchedulerSession {
 public:
  virtual ~ITaskSchedulerSession() = default;
  virtual int32_t Run(TaskStep step, const TaskDefinition& definition, int32_t& answer) = 0;
};

class ITaskScheduler {
 public:
  virtual ~ITaskScheduler() = default;
  // Null only when memory is short.
  virtual std::unique_ptr<ITaskSchedulerSession> Open() = 0;
  virtual void WriteDebugOutput(std::u16string_view text) = 0;
};

}  // namespace SASM
