#include "install/MaintenanceCommands.h"

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/ProductKind.h"
#include "engine/Reporter.h"
#include "install/ControlRegistration.h"
#include "install/FileReplacer.h"
#include "install/ProductInventory.h"
#include "install/ReportingRegistry.h"
#include "install/ServiceRunner.h"
#include "removal/ServiceStopper.h"

namespace SASM {
namespace {

constexpr uint32_t kInstallSourceMsi = 2;
constexpr uint32_t kFirstOsClassWithoutActiveX = 3;

MString FileName(const MString& path) {
  MString name = path.TailFrom("\\");
  if (name.IsEmpty()) return path;
  name.Take(1);
  return name;
}

}  // namespace

bool MaintenanceCommands::IsInstalled(uint32_t kind) {
  MString player, uninstaller;
  return ProductInventory(*shim_.host, *platform_.registry).ReadPlayerPaths(kind, player, uninstaller);
}

bool MaintenanceCommands::IsReleasePlayer(uint32_t kind) {
  if (!IsInstalled(kind)) return false;
  // The ActiveX kind counts only where this installer manages it; its paths are read regardless.
  if (kind == ProductKind::kActiveX && shim_.host->GetOsClass() >= kFirstOsClassWithoutActiveX) return false;
  uint32_t debugger = 1;
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.ReadDword(RegistryHive::Machine, ProductInventory::GetProductKey(kind), u"isScriptDebugger",
                            debugger) &&
         debugger == 0;
}

bool MaintenanceCommands::RemoveFeedbackService(const MString& feedbackPath, const MString& updatePath) {
  HostCallbacks& host = *shim_.host;
  bool activeX = IsInstalled(ProductKind::kActiveX);
  bool plugin = IsInstalled(ProductKind::kNpapi);
  // A player that needs the services keeps them.
  bool needed = host.GetOsClass() >= kFirstOsClassWithoutActiveX ? plugin : (activeX || plugin);
  if (needed) return true;

  bool result = true;
  FileReplacer files(shim_, platform_);
  if (files.FileExists(feedbackPath)) {
    ServiceRunner runner(ServiceRunner::Service::Feedback, feedbackPath, host, platform_);
    if (!ServiceStopper(host, platform_).StopService(runner))
      Reporter::Report(host, Severity::kLogged, ErrorCode::kFeedbackServiceNotStopped);
    runner.RunServiceCommandUnjudged(u"-uninstall");
    if (int32_t error = platform_.files->Delete(feedbackPath.View())) {
      Reporter::ReportBlankError(host, Severity::kLogged, ErrorCode::kFeedbackServiceRemovalFailed,
                                 static_cast<uint32_t>(error));
      result = false;
    }
    return result;
  }
  if (!host.AnalyticsAllowed() || !files.FileExists(updatePath) || host.GetInstallSource() == kInstallSourceMsi)
    return result;
  ServiceRunner runner(ServiceRunner::Service::Update, updatePath, host, platform_);
  runner.RunAnalyticsCommand();
  return result;
}

bool MaintenanceCommands::RemoveUpdateServiceFile(const MString& updatePath, bool setNotify) {
  HostCallbacks& host = *shim_.host;
  bool releasePresent = false;
  for (uint32_t kind : ProductKind::kAll) {
    if (IsReleasePlayer(kind)) releasePresent = true;
  }
  bool result = true;
  if (releasePresent || !FileReplacer(shim_, platform_).FileExists(updatePath)) return result;

  ServiceRunner runner(ServiceRunner::Service::Update, updatePath, host, platform_);
  // With setNotify the executable hears "-uninstall" twice: once inside mode 1, once here.
  bool uninstall = true;
  if (setNotify && !runner.SetUpdateMode(1)) {
    result = false;
    uninstall = false;
  }
  if (uninstall && !runner.RunUninstallCommand()) result = false;
  if (platform_.files->Delete(updatePath.View()) != 0) result = false;
  ControlRegistration(shim_, platform_).DeleteImageExecutionKey(FileName(updatePath));
  return result;
}

}  // namespace SASM
