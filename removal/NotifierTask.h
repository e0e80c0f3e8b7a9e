#pragma once
// The hourly notifier task in the system's scheduler: created or refreshed for
// the logged-on user, removed with the PPAPI kind. The task service serves
// Windows 6.0 and later, the older task scheduler what came before.
#include <cstdint>
#include <string>

#include "engine/ITaskScheduler.h"
#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class HostCallbacks;

class NotifierTask {
 public:
  static constexpr char16_t kTaskName[] = u"Corva Lumen Player PPAPI Notifier";
  static constexpr char16_t kAuthor[] = u"Corva Systems Incorporated";
  // In the running process's own string table.
  static constexpr uint32_t kDescriptionId = 170;
  static constexpr char16_t kTriggerId[] = u"NotificationTrigger";
  static constexpr char16_t kRepetitionInterval[] = u"PT1H";
  static constexpr char16_t kRepetitionDuration[] = u"P1D";
  static constexpr char16_t kStartBoundaryTemplate[] = u"2000-01-01T00:00:00Z";
  // Room for the account name, its terminator included.
  static constexpr size_t kUserNameCapacity = 273;

  enum Mode : int32_t { kOlderScheduler = 1, kTaskService = 2 };

  // Finds the user and the scheduler, and reports 1106 every time.
  NotifierTask(const MString& commandPath, const MString& commandArguments, HostCallbacks& host,
               const Platform& platform);

  static bool CreateNotifierTask(const MString& commandPath, const MString& commandArguments, HostCallbacks& host,
                                 const Platform& platform);
  // An absent task is no failure.
  static bool RemoveNotifierTask(HostCallbacks& host, const Platform& platform);

  // Opens the scheduler of `mode`, then refreshes the existing entry or makes a new one.
  bool Create();

  MString commandPath;
  MString commandArguments;
  int32_t mode;
  HostCallbacks* host;
  std::u16string userName;

 private:
  static int32_t ModeOf(const Platform& platform);
  void FindUserName();
  // Everything the steps write; the random parts drawn for this mode only.
  TaskDefinition Definition();

  Platform platform_;
};

}  // namespace SASM
