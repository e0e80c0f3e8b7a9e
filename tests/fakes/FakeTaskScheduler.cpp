#include "tests/fakes/FakeTaskScheduler.h"

namespace SASM {

class FakeTaskScheduler::Session : public ITaskSchedulerSession {
 public:
  explicit Session(FakeTaskScheduler& owner) : owner_(owner) { ++owner_.openSessions_; }
  ~Session() override { --owner_.openSessions_; }
  int32_t Run(TaskStep step, const TaskDefinition& definition, int32_t& answer) override {
    return owner_.Run(step, definition, answer);
  }

 private:
  FakeTaskScheduler& owner_;
};

std::unique_ptr<ITaskSchedulerSession> FakeTaskScheduler::Open() { return std::make_unique<Session>(*this); }

int32_t FakeTaskScheduler::Run(TaskStep step, const TaskDefinition& definition, int32_t& answer) {
  steps_.push_back(step);
  last_ = definition;
  auto failure = failures_.find(step);
  if (failure != failures_.end()) return failure->second;
  auto scripted = answers_.find(step);
  if (scripted != answers_.end()) answer = scripted->second;
  switch (step) {
    case TaskStep::FindTask:
      return HasTask(definition.name) ? TaskResult::kOk : TaskResult::kFileNotFound;
    case TaskStep::RegisterDefinition:
      tasks_.insert(definition.name);
      return TaskResult::kOk;
    case TaskStep::DeleteTask:
      return tasks_.erase(definition.name) ? TaskResult::kOk : TaskResult::kFileNotFound;
    case TaskStep::ActivateWorkItem:
      return HasWorkItem(definition.name) ? TaskResult::kOk : TaskResult::kFileNotFound;
    case TaskStep::SaveWorkItem:
      workItems_.insert(definition.name);
      return TaskResult::kOk;
    case TaskStep::DeleteWorkItem:
      return workItems_.erase(definition.name) ? TaskResult::kOk : TaskResult::kFileNotFound;
    case TaskStep::CountTriggers:
    case TaskStep::CountWorkItemTriggers:
      if (scripted == answers_.end()) answer = 1;
      return TaskResult::kOk;
    default:
      return TaskResult::kOk;
  }
}

}  // namespace SASM
