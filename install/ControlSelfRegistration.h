#pragma once
// The control's own registration: its library is loaded by path and asked to
// register or unregister itself.
#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;

class ControlSelfRegistration {
 public:
  ControlSelfRegistration(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  // DllRegisterServer, once more after StopPlayers when it fails the first time.
  bool RegisterControl(const MString& path);
  // DllUnregisterServer when it can be reached, then the old class keys go. Always true.
  bool UnregisterControl(const MString& path);

 private:
  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
