#pragma once
// A task scheduler for native tests: registered tasks and work items by name,
// every step recorded with the definition it was given, and any step made to
// answer a chosen HRESULT.
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ITaskScheduler.h"

namespace SASM {

class FakeTaskScheduler : public ITaskScheduler {
 public:
  void Fail(TaskStep step, int32_t result) { failures_[step] = result; }
  void SetAnswer(TaskStep step, int32_t answer) { answers_[step] = answer; }
  // A task of the task service, or a work item of the older scheduler, already there.
  void AddTask(std::u16string name) { tasks_.insert(std::move(name)); }
  void AddWorkItem(std::u16string name) { workItems_.insert(std::move(name)); }

  bool HasTask(std::u16string_view name) const { return tasks_.count(std::u16string(name)) > 0; }
  bool HasWorkItem(std::u16string_view name) const { return workItems_.count(std::u16string(name)) > 0; }
  const std::vector<TaskStep>& Steps() const { return steps_; }
  // The definition as the last step that ran saw it.
  const TaskDefinition& LastDefinition() const { return last_; }
  const std::vector<std::u16string>& DebugOutput() const { return debugOutput_; }
  int OpenSessions() const { return openSessions_; }

  std::unique_ptr<ITaskSchedulerSession> Open() override;
  void WriteDebugOutput(std::u16string_view text) override { debugOutput_.emplace_back(text); }

 private:
  class Session;
  int32_t Run(TaskStep step, const TaskDefinition& definition, int32_t& answer);

  std::map<TaskStep, int32_t> failures_;
  std::map<TaskStep, int32_t> answers_;
  std::set<std::u16string> tasks_;
  std::set<std::u16string> workItems_;
  std::vector<TaskStep> steps_;
  TaskDefinition last_;
  std::vector<std::u16string> debugOutput_;
  int openSessions_ = 0;
};

}  // namespace SASM
