#pragma once
// The shim as the module hands it out: the portable shim, with the two
// operations that need the Windows side of the module itself.
#include "engine/LumenBrokerShim.h"

namespace SASM {

class Win32LumenBrokerShim : public LumenBrokerShim {
 public:
  // Builds the shim and its engine as StartShim does; null only when the shim
  // itself cannot be allocated.
  static LumenBrokerShim* Start(HostCallbacks* host, const Platform& platform);

  using LumenBrokerShim::LumenBrokerShim;

  // Runs the broker server on this thread until it quits; its exit code.
  int32_t RunBroker() override;
  // Calls the browser's IERefreshElevationPolicy; true when the export was
  // found, whatever it answered.
  bool RefreshElevationPolicy() override;
  // The window and its MorphUI for the host's resource module.
  MorphUI* CreateUI() override;
  void DestroyUI(void* ignored, MorphUI* ui) override;
};

}  // namespace SASM
