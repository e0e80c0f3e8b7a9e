#pragma once
// Stops the update or the feedback service before its file is replaced or
// removed, never waiting more than 30 seconds from the start.
#include <cstdint>

#include "engine/Platform.h"

namespace SASM {

class HostCallbacks;
class ServiceRunner;

class ServiceStopper {
 public:
  static constexpr uint32_t kBudgetMs = 30000;
  static constexpr uint32_t kPendingPollMs = 1000;
  static constexpr uint32_t kStopPollMs = 5000;

  ServiceStopper(HostCallbacks& host, const Platform& platform) : host_(host), platform_(platform) {}

  // False, after reporting 1101, when the manager can't be opened.
  bool ServiceExists(const ServiceRunner& runner);
  // True when the service is absent, stopped, or the wait ended, a timed-out one
  // too; false when the manager, the service or the stop control failed.
  bool StopService(const ServiceRunner& runner);

 private:
  HostCallbacks& host_;
  Platform platform_;
};

}  // namespace SASM
