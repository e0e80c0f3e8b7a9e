#include "removal/ServiceStopper.h"

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/Reporter.h"
#include "install/ServiceRunner.h"

namespace SASM {
namespace {

// A manager or service handle of the seam, closed when it goes.
class ServiceHandle {
 public:
  explicit ServiceHandle(IServiceManager& manager) : manager_(manager) {}
  ServiceHandle(const ServiceHandle&) = delete;
  ServiceHandle& operator=(const ServiceHandle&) = delete;
  ~ServiceHandle() {
    if (open_) manager_.Close(id_);
  }
  int32_t OpenManager() { return Opened(manager_.OpenManager(ServiceAccess::kManagerAllAccess, id_)); }
  int32_t OpenService(const ServiceHandle& owner, const MString& name) {
    return Opened(manager_.OpenService(owner.id_, name.View(), ServiceAccess::kServiceAllAccess, id_));
  }
  ServiceHandleId get() const { return id_; }

 private:
  int32_t Opened(int32_t error) {
    open_ = error == 0;
    return error;
  }
  IServiceManager& manager_;
  ServiceHandleId id_ = 0;
  bool open_ = false;
};

}  // namespace

bool ServiceStopper::ServiceExists(const ServiceRunner& runner) {
  if (!platform_.services) return false;
  ServiceHandle manager(*platform_.services);
  if (manager.OpenManager() != 0) {
    Reporter::Report(host_, Severity::kLogged, ErrorCode::kServiceManagerNotOpened);
    return false;
  }
  ServiceHandle service(*platform_.services);
  return service.OpenService(manager, runner.serviceName) == 0;
}

bool ServiceStopper::StopService(const ServiceRunner& runner) {
  if (!ServiceExists(runner)) return true;
  ISystem& system = *platform_.system;
  IServiceManager& services = *platform_.services;
  uint32_t start = system.TickCount();
  auto elapsed = [&] { return system.TickCount() - start; };

  ServiceHandle manager(services);
  if (manager.OpenManager() != 0) {
    Reporter::Report(host_, Severity::kLogged, ErrorCode::kServiceManagerNotOpened);
    return false;
  }
  ServiceHandle service(services);
  if (service.OpenService(manager, runner.serviceName) != 0) {
    Reporter::Report(host_, Severity::kLogged, ErrorCode::kServiceNotOpened);
    return false;
  }
  uint32_t state = 0;
  if (services.QueryState(service.get(), state) != 0 || state == ServiceState::kStopped) return true;
  // Someone else is stopping it already: wait for that, within the budget, and say nothing.
  while (state == ServiceState::kStopPending) {
    system.Sleep(kPendingPollMs);
    if (services.QueryState(service.get(), state) != 0 || state == ServiceState::kStopped) return true;
    if (elapsed() > kBudgetMs) return true;
  }
  if (services.Control(service.get(), ServiceControl::kStop) != 0) {
    Reporter::Report(host_, Severity::kLogged, ErrorCode::kFeedbackServiceNotStopped);
    return false;
  }
  services.QueryState(service.get(), state);
  while (true) {
    if (state == ServiceState::kStopped) {
      Reporter::Report(host_, Severity::kInfo, ErrorCode::kServiceStopped);
      break;
    }
    system.Sleep(kStopPollMs);
    if (services.QueryState(service.get(), state) != 0) {
      Reporter::ReportText(host_, Severity::kLogged, ErrorCode::kServiceStateNotRead,
                           MString(u"QueryServiceStatusEx() failed"));
      break;
    }
    if (state == ServiceState::kStopped) {
      Reporter::ReportText(host_, Severity::kLogged, ErrorCode::kServiceStoppedWhileWaiting,
                           MString(u"serviceProc.dwCurrentState == SERVICE_STOPPED"));
      Reporter::Report(host_, Severity::kInfo, ErrorCode::kServiceStopped);
      break;
    }
    if (elapsed() >= kBudgetMs + 1) {
      Reporter::ReportText(host_, Severity::kLogged, ErrorCode::kServiceStopTimedOut,
                           MString(u"GetTickCount() - dwStartTime > dwTimeout"));
      break;
    }
  }
  // A stop that timed out is still a success: the caller's file steps meet whatever is left.
  return true;
}

}  // namespace SASM
