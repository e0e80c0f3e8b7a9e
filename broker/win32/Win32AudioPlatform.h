#pragma once
// Audio notification over the real system: the device enumerator through COM,
// and the client's events through the kernel.
#include "broker/AudioPlatform.h"

namespace SASM {

class Win32AudioPlatform : public AudioPlatform {
 public:
  std::unique_ptr<IAudioDeviceEnumerator> CreateEnumerator() override;
  bool DuplicateFromProcess(Handle sourceProcess, Handle handle, Handle& duplicate) override;
  void CloseHandle(Handle handle) override;
  void SignalEvent(Handle event) override;
};

}  // namespace SASM
