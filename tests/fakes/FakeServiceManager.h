#pragma once
// A service control manager for native tests: services by name, each answering
// its queries from a script of states (the last one repeats), with failures of
// the manager, the service, a query or the stop control on request.
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IServiceManager.h"

namespace SASM {

class FakeServiceManager : public IServiceManager {
 public:
  // The states the service's queries answer, in order.
  void AddService(std::u16string name, std::vector<uint32_t> states) {
    services_[std::move(name)].states = std::move(states);
  }
  // Manager opens after the first `successes` answer the error.
  void FailManagerOpen(int32_t error, int successes = 0) { managerFailure_ = {error, successes}; }
  void FailServiceOpen(std::u16string_view name, int32_t error, int successes = 0) {
    Service& service = services_[std::u16string(name)];
    service.openFailure = error;
    service.openSuccesses = successes;
  }
  // The query of this number (counting from 1) answers the error.
  void FailQuery(std::u16string_view name, int number, int32_t error) {
    services_[std::u16string(name)].queryFailures[number] = error;
  }
  void FailControl(std::u16string_view name, int32_t error) { services_[std::u16string(name)].controlFailure = error; }

  // Stop controls sent, by service name.
  const std::vector<std::u16string>& Stops() const { return stops_; }
  size_t OpenHandles() const { return open_.size(); }

  int32_t OpenManager(uint32_t, ServiceHandleId& manager) override {
    if (managerFailure_.error != 0 && managerOpens_++ >= managerFailure_.successes) return managerFailure_.error;
    manager = next_++;
    open_[manager] = u"";
    return 0;
  }
  int32_t OpenService(ServiceHandleId manager, std::u16string_view name, uint32_t access,
                      ServiceHandleId& service) override;
  int32_t QueryState(ServiceHandleId service, uint32_t& state) override;
  int32_t Control(ServiceHandleId service, uint32_t control) override;
  void Close(ServiceHandleId handle) override { open_.erase(handle); }

 private:
  struct Service {
    std::vector<uint32_t> states;
    int queries = 0;
    std::map<int, int32_t> queryFailures;
    int32_t controlFailure = 0;
    int32_t openFailure = 0;
    int openSuccesses = 0;
  };
  struct Failure {
    int32_t error = 0;
    int successes = 0;
  };

  std::map<std::u16string, Service> services_;
  Failure managerFailure_;
  int managerOpens_ = 0;
  std::map<ServiceHandleId, std::u16string> open_;  // empty name: a manager handle
  ServiceHandleId next_ = 0x10;
  std::vector<std::u16string> stops_;
};

}  // namespace SASM
