#include "tests/fakes/FakeServiceManager.h"

namespace SASM {
namespace {
constexpr int32_t kServiceDoesNotExist = 1060;
constexpr int32_t kInvalidHandle = 6;
}  // namespace

int32_t FakeServiceManager::OpenService(ServiceHandleId manager, std::u16string_view name, uint32_t,
                                        ServiceHandleId& service) {
  auto owner = open_.find(manager);
  if (owner == open_.end() || !owner->second.empty()) return kInvalidHandle;
  auto found = services_.find(std::u16string(name));
  if (found == services_.end()) return kServiceDoesNotExist;
  Service& entry = found->second;
  if (entry.openFailure != 0) {
    if (entry.openSuccesses <= 0) return entry.openFailure;
    --entry.openSuccesses;
  }
  if (entry.states.empty()) return kServiceDoesNotExist;
  service = next_++;
  open_[service] = found->first;
  return 0;
}

int32_t FakeServiceManager::QueryState(ServiceHandleId handle, uint32_t& state) {
  auto owner = open_.find(handle);
  if (owner == open_.end() || owner->second.empty()) return kInvalidHandle;
  Service& service = services_[owner->second];
  int number = ++service.queries;
  auto failure = service.queryFailures.find(number);
  if (failure != service.queryFailures.end()) return failure->second;
  size_t index = static_cast<size_t>(number - 1);
  state = index < service.states.size() ? service.states[index] : service.states.back();
  return 0;
}

int32_t FakeServiceManager::Control(ServiceHandleId handle, uint32_t control) {
  auto owner = open_.find(handle);
  if (owner == open_.end() || owner->second.empty()) return kInvalidHandle;
  Service& service = services_[owner->second];
  if (service.controlFailure != 0) return service.controlFailure;
  if (control == ServiceControl::kStop) stops_.push_back(owner->second);
  return 0;
}

}  // namespace SASM
