#pragma once
// What audio notification asks of the system: the device enumerator, and the
// kernel handles of the client's events. Handles are carried as their values.
#include <cstdint>
#include <memory>

namespace SASM {

class MMNotificationClient;

// The system's device enumerator; destroying it releases it.
class IAudioDeviceEnumerator {
 public:
  virtual ~IAudioDeviceEnumerator() = default;
  // Registers the client for the system's callbacks; false when the system refuses.
  virtual bool RegisterClient(MMNotificationClient& client) = 0;
  virtual void UnregisterClient(MMNotificationClient& client) = 0;
  // The data flow of the endpoint with this id (0 render, 1 capture); false when
  // the device, its endpoint or its flow can't be had.
  virtual bool GetDataFlow(const char16_t* deviceId, uint32_t& flow) = 0;
};

class AudioPlatform {
 public:
  using Handle = uintptr_t;

  virtual ~AudioPlatform() = default;
  // The system's device enumerator, made in-process; null when it can't be made.
  virtual std::unique_ptr<IAudioDeviceEnumerator> CreateEnumerator() = 0;
  // DuplicateHandle from sourceProcess into this process with the same access, not inheritable.
  virtual bool DuplicateFromProcess(Handle sourceProcess, Handle handle, Handle& duplicate) = 0;
  virtual void CloseHandle(Handle handle) = 0;
  // SetEvent; a null handle fails harmlessly.
  virtual void SignalEvent(Handle event) = 0;
};

}  // namespace SASM
