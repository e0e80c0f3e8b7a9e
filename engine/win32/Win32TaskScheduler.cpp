#include "engine/win32/Win32TaskScheduler.h"

#include "engine/win32/WindowsApi.h"

#include <mstask.h>
#include <new>
#include <oleauto.h>
#include <taskschd.h>

#include <string>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

// The older scheduler's ids; its header declares them without definitions.
constexpr GUID kTaskSchedulerClass = {0x0f87369f, 0xa4e5, 0x4cfc, {0xbd, 0x3e, 0x73, 0xe6, 0x15, 0x45, 0x72, 0xdd}};
constexpr GUID kLegacySchedulerClass = {0x148BD52A, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kLegacySchedulerInterface = {0x148BD527, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kWorkItemClass = {0x148BD520, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kWorkItemInterface = {0x148BD524, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};

constexpr DWORD kAuthenticationPrivacy = 6;  // RPC_C_AUTHN_LEVEL_PKT_PRIVACY
constexpr DWORD kImpersonate = 3;            // RPC_C_IMP_LEVEL_IMPERSONATE

ScopedBstr Text(const std::u16string& text) { return ScopedBstr(ToWide(text).c_str()); }
VARIANT_BOOL Flag(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// A VARIANT that owns its content.
class ScopedVariant {
 public:
  ScopedVariant() { VariantInit(&value_); }
  explicit ScopedVariant(const std::u16string& text) : ScopedVariant() {
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocString(ToWide(text).c_str());
  }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  ~ScopedVariant() { VariantClear(&value_); }
  const VARIANT& get() const { return value_; }

 private:
  VARIANT value_;
};

// Uninitialises COM when it goes, if a step initialised it.
class ComScope {
 public:
  ComScope() = default;
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
  ~ComScope() {
    if (initialized_) CoUninitialize();
  }
  HRESULT Initialized(HRESULT result) {
    if (SUCCEEDED(result)) initialized_ = true;
    return result;
  }

 private:
  bool initialized_ = false;
};

template <typename T>
HRESULT Need(const ComPtr<T>& pointer) {
  return pointer ? S_OK : E_POINTER;
}

class Session : public ITaskSchedulerSession {
 public:
  int32_t Run(TaskStep step, const TaskDefinition& definition, int32_t& answer) override;

 private:
  HRESULT RunTaskService(TaskStep step, const TaskDefinition& definition, int32_t& answer);
  HRESULT RunOlderScheduler(TaskStep step, const TaskDefinition& definition, int32_t& answer);
  HRESULT SetWorkItemTrigger(ITaskTrigger* trigger, bool readFirst, uint16_t startMinute);

  // Declared first, so that it goes after every object below has been released.
  ComScope com_;
  ComPtr<ITaskService> service_;
  ComPtr<ITaskFolder> folder_;
  ComPtr<IRegisteredTask> registered_;
  ComPtr<ITaskDefinition> definition_;
  ComPtr<ITaskSettings> settings_;
  ComPtr<IRegistrationInfo> info_;
  ComPtr<ITriggerCollection> triggers_;
  ComPtr<ITrigger> trigger_;
  ComPtr<IDailyTrigger> daily_;
  ComPtr<IRepetitionPattern> repetition_;
  ComPtr<IActionCollection> actions_;
  ComPtr<IAction> action_;
  ComPtr<IExecAction> exec_;
  ComPtr<::ITaskScheduler> legacy_;
  ComPtr<ITask> workItem_;
};

int32_t Session::Run(TaskStep step, const TaskDefinition& definition, int32_t& answer) {
  HRESULT result = step >= TaskStep::InitializeComLegacy ? RunOlderScheduler(step, definition, answer)
                                                          : RunTaskService(step, definition, answer);
  return static_cast<int32_t>(result);
}

HRESULT Session::RunTaskService(TaskStep step, const TaskDefinition& d, int32_t& answer) {
  switch (step) {
    case TaskStep::InitializeCom:
      return com_.Initialized(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    case TaskStep::InitializeSecurity:
      return CoInitializeSecurity(nullptr, -1, nullptr, nullptr, kAuthenticationPrivacy, kImpersonate, nullptr,
                                  EOAC_NONE, nullptr);
    case TaskStep::CreateTaskService:
      return CoCreateInstance(kTaskSchedulerClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(ITaskService),
                              service_.receiveVoid());
    case TaskStep::Connect: {
      if (!service_) return E_POINTER;
      ScopedVariant server, user, domain, password;
      return service_->Connect(server.get(), user.get(), domain.get(), password.get());
    }
    case TaskStep::OpenRootFolder: {
      if (!service_) return E_POINTER;
      ScopedBstr root(L"\\");
      return service_->GetFolder(root.get(), folder_.receive());
    }
    case TaskStep::FindTask:
      if (!folder_) return E_POINTER;
      return folder_->GetTask(Text(d.name).get(), registered_.receive());
    case TaskStep::NewDefinition:
      if (!service_) return E_POINTER;
      return service_->NewTask(0, definition_.receive());
    case TaskStep::TakeRegisteredDefinition:
      if (!registered_) return E_POINTER;
      return registered_->get_Definition(definition_.receive());
    case TaskStep::TakeSettings:
      if (!definition_) return E_POINTER;
      return definition_->get_Settings(settings_.receive());
    case TaskStep::SetStartWhenAvailable:
      if (!settings_) return E_POINTER;
      return settings_->put_StartWhenAvailable(Flag(d.startWhenAvailable));
    case TaskStep::SetCompatibility:
      if (!settings_) return E_POINTER;
      return settings_->put_Compatibility(static_cast<TASK_COMPATIBILITY>(d.compatibility));
    case TaskStep::SetDisallowStartIfOnBatteries:
      if (!settings_) return E_POINTER;
      return settings_->put_DisallowStartIfOnBatteries(Flag(d.disallowStartIfOnBatteries));
    case TaskStep::SetRunOnlyIfNetworkAvailable:
      if (!settings_) return E_POINTER;
      return settings_->put_RunOnlyIfNetworkAvailable(Flag(d.runOnlyIfNetworkAvailable));
    case TaskStep::TakeRegistrationInfo:
      if (!definition_) return E_POINTER;
      return definition_->get_RegistrationInfo(info_.receive());
    case TaskStep::SetAuthor:
      if (!info_) return E_POINTER;
      return info_->put_Author(Text(d.author).get());
    case TaskStep::SetDescription:
      if (!info_) return E_POINTER;
      return info_->put_Description(Text(d.description).get());
    case TaskStep::TakeTriggers:
      if (!definition_) return E_POINTER;
      return definition_->get_Triggers(triggers_.receive());
    case TaskStep::CountTriggers: {
      if (!triggers_) return E_POINTER;
      LONG count = 0;
      HRESULT result = triggers_->get_Count(&count);
      if (SUCCEEDED(result)) answer = count;
      return result;
    }
    case TaskStep::TakeFirstTrigger:
      if (!triggers_) return E_POINTER;
      return triggers_->get_Item(1, trigger_.receive());
    case TaskStep::CreateTrigger:
      if (!triggers_) return E_POINTER;
      return triggers_->Create(static_cast<TASK_TRIGGER_TYPE2>(d.triggerType), trigger_.receive());
    case TaskStep::QueryDailyTrigger:
      if (!trigger_) return E_POINTER;
      return trigger_->QueryInterface(__uuidof(IDailyTrigger), daily_.receiveVoid());
    case TaskStep::SetTriggerId:
      if (!trigger_) return E_POINTER;
      return trigger_->put_Id(Text(d.triggerId).get());
    case TaskStep::SetStartBoundary:
      if (!trigger_) return E_POINTER;
      return trigger_->put_StartBoundary(Text(d.startBoundary).get());
    case TaskStep::SetDaysInterval:
      if (!daily_) return E_POINTER;
      return daily_->put_DaysInterval(d.daysInterval);
    case TaskStep::TakeRepetition:
      if (!trigger_) return E_POINTER;
      return trigger_->get_Repetition(repetition_.receive());
    case TaskStep::SetRepetitionDuration:
      if (!repetition_) return E_POINTER;
      return repetition_->put_Duration(Text(d.repetitionDuration).get());
    case TaskStep::SetRepetitionInterval:
      if (!repetition_) return E_POINTER;
      return repetition_->put_Interval(Text(d.repetitionInterval).get());
    case TaskStep::TakeActions:
      if (!definition_) return E_POINTER;
      return definition_->get_Actions(actions_.receive());
    case TaskStep::ClearActions:
      if (!actions_) return E_POINTER;
      return actions_->Clear();
    case TaskStep::CreateAction:
      if (!actions_) return E_POINTER;
      return actions_->Create(static_cast<TASK_ACTION_TYPE>(d.actionType), action_.receive());
    case TaskStep::QueryExecAction:
      if (!action_) return E_POINTER;
      return action_->QueryInterface(__uuidof(IExecAction), exec_.receiveVoid());
    case TaskStep::SetPath:
      if (!exec_) return E_POINTER;
      return exec_->put_Path(Text(d.commandPath).get());
    case TaskStep::SetArguments:
      if (!exec_) return E_POINTER;
      return exec_->put_Arguments(Text(d.commandArguments).get());
    case TaskStep::RegisterDefinition: {
      if (!folder_ || !definition_) return E_POINTER;
      ScopedVariant user(d.userName), password, securityDescriptor(u"");
      ComPtr<IRegisteredTask> registered;
      return folder_->RegisterTaskDefinition(Text(d.name).get(), definition_.get(), d.registrationFlags, user.get(),
                                             password.get(), static_cast<TASK_LOGON_TYPE>(d.logonType),
                                             securityDescriptor.get(), registered.receive());
    }
    case TaskStep::DeleteTask:
      if (!folder_) return E_POINTER;
      return folder_->DeleteTask(Text(d.name).get(), 0);
    default:
      return E_INVALIDARG;
  }
}

HRESULT Session::SetWorkItemTrigger(ITaskTrigger* trigger, bool readFirst, uint16_t startMinute) {
  TASK_TRIGGER record = {};
  record.cbTriggerSize = sizeof(record);
  if (readFirst) {
    HRESULT result = trigger->GetTrigger(&record);
    if (FAILED(result)) return result;
  }
  record.wStartMinute = startMinute;
  return trigger->SetTrigger(&record);
}

HRESULT Session::RunOlderScheduler(TaskStep step, const TaskDefinition& d, int32_t& answer) {
  auto wide = [](const std::u16string& text) { return ToWide(text); };
  switch (step) {
    case TaskStep::InitializeComLegacy:
      return com_.Initialized(CoInitialize(nullptr));
    case TaskStep::CreateLegacyScheduler:
      return CoCreateInstance(kLegacySchedulerClass, nullptr, CLSCTX_INPROC_SERVER, kLegacySchedulerInterface,
                              legacy_.receiveVoid());
    case TaskStep::ActivateWorkItem:
      if (!legacy_) return E_POINTER;
      return legacy_->Activate(wide(d.name).c_str(), kWorkItemInterface,
                               reinterpret_cast<IUnknown**>(workItem_.receive()));
    case TaskStep::NewWorkItem:
      if (!legacy_) return E_POINTER;
      return legacy_->NewWorkItem(wide(d.name).c_str(), kWorkItemClass, kWorkItemInterface,
                                  reinterpret_cast<IUnknown**>(workItem_.receive()));
    case TaskStep::SetAccount:
      if (!workItem_) return E_POINTER;
      return workItem_->SetAccountInformation(wide(d.userName).c_str(), nullptr);
    case TaskStep::SetCreator:
      if (!workItem_) return E_POINTER;
      return workItem_->SetCreator(wide(d.author).c_str());
    case TaskStep::SetComment:
      if (!workItem_) return E_POINTER;
      return workItem_->SetComment(wide(d.description).c_str());
    case TaskStep::SetApplicationName:
      if (!workItem_) return E_POINTER;
      return workItem_->SetApplicationName(wide(d.commandPath).c_str());
    case TaskStep::SetWorkItemFlags:
      if (!workItem_) return E_POINTER;
      return workItem_->SetFlags(d.workItemFlags);
    case TaskStep::SetParameters:
      if (!workItem_) return E_POINTER;
      return workItem_->SetParameters(wide(d.commandArguments).c_str());
    case TaskStep::CountWorkItemTriggers: {
      if (!workItem_) return E_POINTER;
      WORD count = 0;
      HRESULT result = workItem_->GetTriggerCount(&count);
      if (SUCCEEDED(result)) answer = count;
      return result;
    }
    case TaskStep::CreateWorkItemTrigger: {
      if (!workItem_) return E_POINTER;
      WORD index = 0;
      ComPtr<ITaskTrigger> trigger;
      HRESULT result = workItem_->CreateTrigger(&index, trigger.receive());
      if (FAILED(result)) return result;
      return SetWorkItemTrigger(trigger.get(), false, d.startMinute);
    }
    case TaskStep::UpdateFirstWorkItemTrigger: {
      if (!workItem_) return E_POINTER;
      ComPtr<ITaskTrigger> trigger;
      HRESULT result = workItem_->GetTrigger(0, trigger.receive());
      if (FAILED(result)) return result;
      return SetWorkItemTrigger(trigger.get(), true, d.startMinute);
    }
    case TaskStep::SaveWorkItem: {
      if (!workItem_) return E_POINTER;
      ComPtr<IPersistFile> file;
      HRESULT result = workItem_->QueryInterface(IID_IPersistFile, file.receiveVoid());
      if (FAILED(result)) return result;
      return file->Save(nullptr, TRUE);
    }
    case TaskStep::DeleteWorkItem:
      if (!legacy_) return E_POINTER;
      return legacy_->Delete(wide(d.name).c_str());
    default:
      return E_INVALIDARG;
  }
}

}  // namespace

std::unique_ptr<ITaskSchedulerSession> Win32TaskScheduler::Open() {
  return std::unique_ptr<ITaskSchedulerSession>(new (std::nothrow) Session());
}

void Win32TaskScheduler::WriteDebugOutput(std::u16string_view text) { OutputDebugStringW(ToWide(text).c_str()); }

}  // namespace SASM
