// The notifier task through the prefix's task service. Wine keeps a task's
// registration but not its triggers or actions, and answers E_NOTIMPL to
// several getters, so the steps it lacks are left out where the test drives them.
#include "engine/win32/Win32TaskScheduler.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>
#include <taskschd.h>

#include <memory>
#include <string>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "removal/NotifierTask.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr wchar_t kTaskName[] = L"Corva Lumen Player PPAPI Notifier";
constexpr GUID kTaskSchedulerClass = {0x0f87369f, 0xa4e5, 0x4cfc, {0xbd, 0x3e, 0x73, 0xe6, 0x15, 0x45, 0x72, 0xdd}};

// The root folder of the task service, reached directly.
class TaskFolder {
 public:
  TaskFolder() {
    initialized_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    VARIANT empty;
    VariantInit(&empty);
    if (FAILED(CoCreateInstance(kTaskSchedulerClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(ITaskService),
                                service_.receiveVoid())) ||
        FAILED(service_->Connect(empty, empty, empty, empty)))
      return;
    ScopedBstr root(L"\\");
    service_->GetFolder(root.get(), folder_.receive());
  }
  ~TaskFolder() {
    folder_.reset();
    service_.reset();
    if (initialized_) CoUninitialize();
  }
  bool Ready() const { return static_cast<bool>(folder_); }
  ComPtr<IRegisteredTask> Find() {
    ComPtr<IRegisteredTask> task;
    ScopedBstr name(kTaskName);
    folder_->GetTask(name.get(), task.receive());
    return task;
  }
  void Delete() {
    ScopedBstr name(kTaskName);
    folder_->DeleteTask(name.get(), 0);
  }

 private:
  bool initialized_ = false;
  ComPtr<ITaskService> service_;
  ComPtr<ITaskFolder> folder_;
};

class Win32TaskSchedulerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(folder_.Ready());
    folder_.Delete();
  }
  void TearDown() override { folder_.Delete(); }

  TaskFolder folder_;
  ReferenceHost host_{HostOptions(), MString(u"")};
};

// The new-task steps that Wine performs, in their order: it lacks the trigger's id, its
// repetition, and a refresh's trigger count and action clearing.
constexpr TaskStep kStepsWineKeeps[] = {
    TaskStep::InitializeCom,      TaskStep::InitializeSecurity,   TaskStep::CreateTaskService,
    TaskStep::Connect,            TaskStep::OpenRootFolder,       TaskStep::NewDefinition,
    TaskStep::TakeSettings,       TaskStep::SetStartWhenAvailable, TaskStep::SetCompatibility,
    TaskStep::SetDisallowStartIfOnBatteries, TaskStep::SetRunOnlyIfNetworkAvailable,
    TaskStep::TakeRegistrationInfo, TaskStep::SetAuthor,          TaskStep::SetDescription,
    TaskStep::TakeTriggers,       TaskStep::CreateTrigger,        TaskStep::QueryDailyTrigger,
    TaskStep::SetStartBoundary,   TaskStep::SetDaysInterval,      TaskStep::TakeActions,
    TaskStep::CreateAction,       TaskStep::QueryExecAction,      TaskStep::SetPath,
    TaskStep::SetArguments,       TaskStep::RegisterDefinition,
};

TaskDefinition Notifier() {
  TaskDefinition definition;
  definition.name = u"Corva Lumen Player PPAPI Notifier";
  definition.author = u"Corva Systems Incorporated";
  definition.description = u"Checks for player updates";
  definition.commandPath = u"C:\\Lumen\\Notifier.exe";
  definition.commandArguments = u"-check pepperplugin";
  definition.triggerId = u"NotificationTrigger";
  definition.startBoundary = u"2000-01-01T00:37:00Z";
  definition.repetitionInterval = u"PT1H";
  definition.repetitionDuration = u"P1D";
  return definition;
}

TEST_F(Win32TaskSchedulerTest, DefinitionIsRegisteredReadBackByNameAndRemovedOnce) {
  Win32TaskScheduler scheduler;
  {
    std::unique_ptr<ITaskSchedulerSession> session = scheduler.Open();
    ASSERT_TRUE(session);
    TaskDefinition definition = Notifier();
    for (TaskStep step : kStepsWineKeeps) {
      int32_t answer = 0;
      ASSERT_GE(session->Run(step, definition, answer), 0) << static_cast<int>(step);
    }
  }
  ComPtr<IRegisteredTask> task = folder_.Find();
  ASSERT_TRUE(task);
  ScopedBstr name, author;
  ASSERT_EQ(task->get_Name(name.receive()), S_OK);
  EXPECT_STREQ(name.get(), kTaskName);
  ComPtr<ITaskDefinition> stored;
  ComPtr<IRegistrationInfo> info;
  ASSERT_EQ(task->get_Definition(stored.receive()), S_OK);
  ASSERT_EQ(stored->get_RegistrationInfo(info.receive()), S_OK);
  ASSERT_EQ(info->get_Author(author.receive()), S_OK);
  EXPECT_STREQ(author.get(), L"Corva Systems Incorporated");
  task.reset();

  // An absent task is no failure either.
  EXPECT_TRUE(NotifierTask::RemoveNotifierTask(host_, Win32Platform()));
  EXPECT_FALSE(folder_.Find());
  EXPECT_TRUE(NotifierTask::RemoveNotifierTask(host_, Win32Platform()));
  EXPECT_EQ(host_.Log().Count(), 0) << host_.FormatLog();
}

}  // namespace
