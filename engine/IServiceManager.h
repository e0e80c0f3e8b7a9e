#pragma once
// Service control manager seam: the manager, one service by name, its state
// and the stop control. Results are the platform's error numbers.
#include <cstdint>
#include <string_view>

namespace SASM {

namespace ServiceAccess {
constexpr uint32_t kManagerAllAccess = 0xF003F;  // SC_MANAGER_ALL_ACCESS
constexpr uint32_t kServiceAllAccess = 0xF01FF;  // SERVICE_ALL_ACCESS
}  // namespace ServiceAccess

namespace ServiceState {
constexpr uint32_t kStopped = 1;
constexpr uint32_t kStopPending = 3;
constexpr uint32_t kRunning = 4;
}  // namespace ServiceState

namespace ServiceControl {
constexpr uint32_t kStop = 1;
}  // namespace ServiceControl

using ServiceHandleId = uint64_t;

class IServiceManager {
 public:
  virtual ~IServiceManager() = default;
  virtual int32_t OpenManager(uint32_t access, ServiceHandleId& manager) = 0;
  virtual int32_t OpenService(ServiceHandleId manager, std::u16string_view name, uint32_t access,
                              ServiceHandleId& service) = 0;
  // The current state from the process status (info level 0).
  virtual int32_t QueryState(ServiceHandleId service, uint32_t& state) = 0;
  virtual int32_t Control(ServiceHandleId service, uint32_t control) = 0;
  // For manager and service handles alike.
  virtual void Close(ServiceHandleId handle) = 0;
};

}  // namespace SASM
