#pragma once
#include "engine/ITaskScheduler.h"

namespace SASM {

// The task service and the older task scheduler through COM; each session keeps
// the objects its steps took and lets them go, and COM, when it ends.
class Win32TaskScheduler : public ITaskScheduler {
 public:
  std::unique_ptr<ITaskSchedulerSession> Open() override;
  void WriteDebugOutput(std::u16string_view text) override;
};

}  // namespace SASM
