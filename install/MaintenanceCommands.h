#pragma once
// When the update and feedback services go: each is asked to remove itself with
// its own switch, then its file is deleted, but only once no player that needs
// the services remains.
#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;

class MaintenanceCommands {
 public:
  MaintenanceCommands(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  // Without a player of kind 8 or 16: stops and removes the feedback service, or, when
  // it isn't there, turns the update service's analytics on where that is allowed.
  bool RemoveFeedbackService(const MString& feedbackPath, const MString& updatePath);
  // Without a release player: the update service removes itself, and its file goes.
  bool RemoveUpdateServiceFile(const MString& updatePath, bool setNotify);

 private:
  bool IsInstalled(uint32_t kind);
  // Whether the kind's paths read and its isScriptDebugger value is 0; for ActiveX only
  // where the OS class leaves it to this installer.
  bool IsReleasePlayer(uint32_t kind);

  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
