#include "removal/NotifierTask.h"

#include <span>
#include <vector>

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/Reporter.h"
#include "engine/StringLookup.h"

namespace SASM {
namespace {

enum class Rule {
  Plain,
  // 0x80010119 (security already set) is reported and the walk goes on.
  SecurityMaySetAlready,
  // The task or work item being absent is no failure.
  AbsenceIsFine,
  // A count of zero fails too, reported with the second code.
  CountMustNotBeZero,
  // A failure goes to the debug output only.
  DebugOutputOnly,
};

struct StepRow {
  TaskStep step;
  int32_t code;
  Rule rule = Rule::Plain;
  int32_t zeroCode = 0;
};

using Step = TaskStep;

constexpr StepRow kServiceOpening[] = {
    {Step::InitializeCom, 1168},  {Step::InitializeSecurity, 1169, Rule::SecurityMaySetAlready},
    {Step::CreateTaskService, 1170}, {Step::Connect, 1171},
    {Step::OpenRootFolder, 1172},
};

constexpr StepRow kNewTaskAction[] = {
    {Step::CreateAction, 1199}, {Step::QueryExecAction, 1700}, {Step::SetPath, 1701}, {Step::SetArguments, 1702},
};

constexpr StepRow kNewTask[] = {
    {Step::NewDefinition, 1181},
    {Step::TakeSettings, 1182},
    {Step::SetStartWhenAvailable, 0, Rule::DebugOutputOnly},
    {Step::SetCompatibility, 1183},
    {Step::SetDisallowStartIfOnBatteries, 1184},
    {Step::SetRunOnlyIfNetworkAvailable, 1185},
    {Step::TakeRegistrationInfo, 1186},
    {Step::SetAuthor, 1187},
    {Step::SetDescription, 1188},
    {Step::TakeTriggers, 1189},
    {Step::CreateTrigger, 1190},
    {Step::QueryDailyTrigger, 1191},
    {Step::SetTriggerId, 1192},
    {Step::SetStartBoundary, 1193},
    {Step::SetDaysInterval, 1194},
    {Step::TakeRepetition, 1195},
    {Step::SetRepetitionDuration, 1196},
    {Step::SetRepetitionInterval, 1197},
    {Step::TakeActions, 1198},
};

// A refresh keeps the trigger's start boundary and rewrites the action.
constexpr StepRow kExistingTask[] = {
    {Step::TakeRegisteredDefinition, 1173},
    {Step::TakeTriggers, 1174},
    {Step::CountTriggers, 1175, Rule::CountMustNotBeZero, 1176},
    {Step::TakeFirstTrigger, 1177},
    {Step::TakeRepetition, 1178},
    {Step::SetRepetitionInterval, 1179},
    {Step::TakeSettings, 1182},
    {Step::SetStartWhenAvailable, 1183},
    {Step::SetCompatibility, 1183},
    {Step::TakeActions, 1198},
    {Step::ClearActions, 1704},
};

constexpr StepRow kRegisterNew[] = {{Step::RegisterDefinition, 1703}};
constexpr StepRow kRegisterExisting[] = {{Step::RegisterDefinition, 1759}};

constexpr StepRow kServiceRemoval[] = {
    {Step::InitializeCom, 1724},     {Step::InitializeSecurity, 1725, Rule::SecurityMaySetAlready},
    {Step::CreateTaskService, 1726}, {Step::Connect, 1727},
    {Step::OpenRootFolder, 1728},    {Step::DeleteTask, 1721, Rule::AbsenceIsFine},
};

constexpr StepRow kLegacyOpening[] = {{Step::InitializeComLegacy, 1705}, {Step::CreateLegacyScheduler, 1706}};

constexpr StepRow kNewWorkItem[] = {
    {Step::NewWorkItem, 1707},       {Step::SetAccount, 1709},         {Step::SetCreator, 1717},
    {Step::SetComment, 1718},        {Step::SetApplicationName, 1719}, {Step::SetWorkItemFlags, 1720},
    {Step::SetParameters, 1731},     {Step::CreateWorkItemTrigger, 1710}, {Step::SaveWorkItem, 1711},
};

constexpr StepRow kExistingWorkItem[] = {
    {Step::CountWorkItemTriggers, 1708}, {Step::UpdateFirstWorkItemTrigger, 1712}, {Step::SetApplicationName, 1719},
    {Step::SetParameters, 1731},         {Step::SetAccount, 1756},                 {Step::SetWorkItemFlags, 1756},
    {Step::SaveWorkItem, 1713},
};

constexpr StepRow kLegacyRemoval[] = {
    {Step::InitializeComLegacy, 1730},
    {Step::CreateLegacyScheduler, 1729},
    {Step::DeleteWorkItem, 1722, Rule::AbsenceIsFine},
};

constexpr size_t kSecondsDigit = 15;
constexpr size_t kTensDigit = 14;
constexpr size_t kHourDigit = 12;
constexpr size_t kUserNameRoom = NotifierTask::kUserNameCapacity - 1;

// Walks the rows in order and stops at the first failure, which it reports with the
// row's code and the result in decimal.
class StepWalker {
 public:
  StepWalker(HostCallbacks& host, ITaskScheduler& scheduler, ITaskSchedulerSession& session,
             const TaskDefinition& definition)
      : host_(host), scheduler_(scheduler), session_(session), definition_(definition) {}

  bool Walk(std::span<const StepRow> rows) {
    for (const StepRow& row : rows) {
      if (!Run(row)) return false;
    }
    return true;
  }

  bool Succeeds(TaskStep step) {
    int32_t answer = 0;
    return session_.Run(step, definition_, answer) >= 0;
  }

 private:
  bool Run(const StepRow& row) {
    int32_t answer = 0;
    int32_t result = session_.Run(row.step, definition_, answer);
    if (result >= 0) {
      if (row.rule != Rule::CountMustNotBeZero || answer != 0) return true;
      Reporter::ReportErrorDecimal(host_, Severity::kLogged, row.zeroCode, answer);
      return false;
    }
    switch (row.rule) {
      case Rule::AbsenceIsFine:
        if (result == TaskResult::kFileNotFound) return true;
        break;
      case Rule::DebugOutputOnly: {
        MString text(u"\nCannot put setting information: ");
        text.Append(MString::FromUnsigned(static_cast<uint32_t>(result), 16).ToLower());
        scheduler_.WriteDebugOutput(text.View());
        return false;
      }
      case Rule::SecurityMaySetAlready:
        Reporter::ReportErrorDecimal(host_, Severity::kLogged, row.code, result);
        return result == TaskResult::kSecurityAlreadySet;
      default:
        break;
    }
    Reporter::ReportErrorDecimal(host_, Severity::kLogged, row.code, result);
    return false;
  }

  HostCallbacks& host_;
  ITaskScheduler& scheduler_;
  ITaskSchedulerSession& session_;
  const TaskDefinition& definition_;
};

// A digit from one draw of the system's generator; a failed draw gives 0.
char16_t RandomDigit(ISystem& system, uint32_t below) {
  uint32_t value = 0;
  if (!system.DrawRandom(value)) return u'0';
  return static_cast<char16_t>(u'0' + value % below);
}

void Report(HostCallbacks& host, int32_t severity, int32_t code, int64_t number) {
  Reporter::ReportText(host, severity, code, MString::FromNumber(number));
}

}  // namespace

NotifierTask::NotifierTask(const MString& path, const MString& arguments, HostCallbacks& owner,
                           const Platform& platform)
    : commandPath(path), commandArguments(arguments), mode(ModeOf(platform)), host(&owner), platform_(platform) {
  FindUserName();
  Reporter::Report(*host, Severity::kLogged, ErrorCode::kNotifierTaskStarted);
}

int32_t NotifierTask::ModeOf(const Platform& platform) {
  return platform.system->WindowsMajorVersion() >= 6 ? kTaskService : kOlderScheduler;
}

void NotifierTask::FindUserName() {
  userName.clear();
  ITerminalSessions* sessions = platform_.sessions;
  if (!sessions || !sessions->Available()) return;
  HostCallbacks& h = *host;

  std::vector<uint32_t> ids;
  uint32_t error = 0;
  bool listed = sessions->EnumerateSessions(ids, error);
  if (listed) Report(h, Severity::kInfo, ErrorCode::kSessionsListed, static_cast<int64_t>(ids.size()));
  else Report(h, Severity::kLogged, ErrorCode::kSessionsNotListed, error);

  // A listing without sessions (which a real system never gives) falls back on the
  // console session, where the logged-on user is.
  uint32_t remembered = listed && ids.empty() ? sessions->ActiveConsoleSessionId() : 0;
  uint32_t working = remembered;
  for (uint32_t id : ids) {
    working = id;
    uint32_t state = 0;
    if (!sessions->QueryConnectState(id, state, error)) {
      Report(h, Severity::kLogged, ErrorCode::kSessionStateNotRead, error);
      continue;
    }
    Report(h, Severity::kLogged, ErrorCode::kSessionExamined, id);
    if (state == SessionInfo::kActive) {
      remembered = id;
      Report(h, Severity::kLogged, ErrorCode::kSessionActive, id);
    } else {
      Report(h, Severity::kLogged, ErrorCode::kSessionNotActive, remembered);
      working = remembered;
    }
  }
  Report(h, Severity::kLogged, ErrorCode::kSessionChosen, working);

  std::u16string user, domain;
  if (uint32_t userError = sessions->QueryText(working, SessionInfo::kUserName, user)) {
    Report(h, Severity::kLogged, ErrorCode::kSessionUserNotRead, userError);
    user.clear();
  } else if (uint32_t domainError = sessions->QueryText(working, SessionInfo::kDomainName, domain)) {
    Report(h, Severity::kLogged, ErrorCode::kSessionDomainNotRead, domainError);
    domain.clear();
  }

  if (!user.empty() && !domain.empty() && user.size() + domain.size() < kUserNameRoom) {
    userName = domain + u"\\" + user;
  } else if (!user.empty() && user.size() < kUserNameRoom) {
    Reporter::Report(h, Severity::kLogged, ErrorCode::kTaskUserWithoutDomain);
    userName = user;
  } else {
    Reporter::Report(h, Severity::kLogged, ErrorCode::kTaskUserUnknown);
  }
}

TaskDefinition NotifierTask::Definition() {
  ISystem& system = *platform_.system;
  TaskDefinition definition;
  definition.name = kTaskName;
  definition.author = kAuthor;
  definition.description = StringLookup::LoadOwn(system, kDescriptionId);
  definition.userName = userName;
  definition.commandPath = commandPath.ToU16();
  definition.commandArguments = commandArguments.ToU16();
  definition.triggerId = kTriggerId;
  definition.repetitionInterval = kRepetitionInterval;
  definition.repetitionDuration = kRepetitionDuration;
  if (mode == kTaskService) {
    // Random minutes spread the users' checks over the hour.
    std::u16string boundary = kStartBoundaryTemplate;
    boundary[kHourDigit] = u'0';
    boundary[kTensDigit] = RandomDigit(system, 6);
    boundary[kSecondsDigit] = RandomDigit(system, 10);
    definition.startBoundary = boundary;
  } else {
    uint32_t value = 0;
    definition.startMinute = system.DrawRandom(value) ? static_cast<uint16_t>(value % 60) : 0;
  }
  return definition;
}

namespace {

// One scheduler's road: open it, look for the entry, then refresh the entry or make it.
struct CreationRoad {
  std::span<const StepRow> opening;
  TaskStep find;
  std::span<const StepRow> existing[3];  // unused places stay empty
  std::span<const StepRow> fresh[3];
  int32_t refreshed;
  int32_t created;
};

const CreationRoad kTaskServiceRoad = {kServiceOpening,
                                       TaskStep::FindTask,
                                       {kExistingTask, kNewTaskAction, kRegisterExisting},
                                       {kNewTask, kNewTaskAction, kRegisterNew},
                                       ErrorCode::kTaskRefreshed,
                                       ErrorCode::kTaskCreated};
const CreationRoad kOlderSchedulerRoad = {kLegacyOpening,
                                          TaskStep::ActivateWorkItem,
                                          {kExistingWorkItem},
                                          {kNewWorkItem},
                                          ErrorCode::kWorkItemRefreshed,
                                          ErrorCode::kWorkItemCreated};

}  // namespace

bool NotifierTask::Create() {
  if (!platform_.scheduler) return false;
  ITaskScheduler& scheduler = *platform_.scheduler;
  std::unique_ptr<ITaskSchedulerSession> session = scheduler.Open();
  if (!session) return false;
  const CreationRoad& road = mode == kTaskService ? kTaskServiceRoad : kOlderSchedulerRoad;
  TaskDefinition definition = Definition();
  StepWalker walker(*host, scheduler, *session, definition);
  if (!walker.Walk(road.opening)) return false;
  const bool existing = walker.Succeeds(road.find);
  for (std::span<const StepRow> rows : existing ? road.existing : road.fresh) {
    if (!walker.Walk(rows)) return false;
  }
  Reporter::Report(*host, Severity::kInfo, existing ? road.refreshed : road.created);
  return true;
}

bool NotifierTask::CreateNotifierTask(const MString& commandPath, const MString& commandArguments,
                                      HostCallbacks& host, const Platform& platform) {
  NotifierTask task(commandPath, commandArguments, host, platform);
  return task.Create();
}

bool NotifierTask::RemoveNotifierTask(HostCallbacks& host, const Platform& platform) {
  if (!platform.scheduler) return false;
  ITaskScheduler& scheduler = *platform.scheduler;
  std::unique_ptr<ITaskSchedulerSession> session = scheduler.Open();
  if (!session) return false;
  TaskDefinition definition;
  definition.name = kTaskName;
  StepWalker walker(host, scheduler, *session, definition);
  if (ModeOf(platform) == kTaskService) return walker.Walk(kServiceRemoval);
  return walker.Walk(kLegacyRemoval);
}

}  // namespace SASM
