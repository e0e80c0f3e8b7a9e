#include "install/ControlSelfRegistration.h"

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/Reporter.h"
#include "engine/ScopedModule.h"
#include "removal/RegistryKeyFamilies.h"

namespace SASM {

bool ControlSelfRegistration::RegisterControl(const MString& path) {
  HostCallbacks& host = *shim_.host;
  if (!platform_.modules) {
    Reporter::ReportPathError(host, Severity::kUserMustKnow, ErrorCode::kControlNotLoaded, path,
                              ModuleError::kModuleNotFound);
    return false;
  }
  IModuleLoader& loader = *platform_.modules;
  ScopedModule module(loader);
  if (int32_t error = module.Load(path.View())) {
    Reporter::ReportPathError(host, Severity::kUserMustKnow, ErrorCode::kControlNotLoaded, path,
                              static_cast<uint32_t>(error));
    return false;
  }
  ModuleEntryId entry = 0;
  if (int32_t error = loader.FindEntry(module.get(), "DllRegisterServer", entry)) {
    Reporter::ReportPathError(host, Severity::kUserMustKnow, ErrorCode::kRegisterServerMissing, path,
                              static_cast<uint32_t>(error));
    return false;
  }
  int32_t result = loader.CallEntry(entry);
  if (result >= 0) return true;
  Reporter::ReportPathError(host, Severity::kLogged, ErrorCode::kRegisterServerFailed, path,
                            static_cast<uint32_t>(result));
  // A running player may hold what the control writes; stop them and try once more.
  shim_.StopPlayers();
  result = loader.CallEntry(entry);
  if (result >= 0) return true;
  Reporter::ReportPathError(host, Severity::kUserMustKnow, ErrorCode::kRegisterServerFailed, path,
                            static_cast<uint32_t>(result));
  return false;
}

bool ControlSelfRegistration::UnregisterControl(const MString& path) {
  if (platform_.modules) {
    IModuleLoader& loader = *platform_.modules;
    ScopedModule module(loader);
    ModuleEntryId entry = 0;
    if (module.Load(path.View()) == 0 && loader.FindEntry(module.get(), "DllUnregisterServer", entry) == 0)
      loader.CallEntry(entry);
  }
  RegistryKeyFamilies::Walk(RegistryKeyFamilies::Selection::OldClassKeys, &RegistryKeyFamilies::DeleteVisitor,
                            platform_.registry);
  return true;
}

}  // namespace SASM
