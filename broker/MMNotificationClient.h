#pragma once
// One client's registration for audio device notification. The client gives
// events of its own; this object holds duplicates and signals them from the
// system's callbacks, which arrive on the audio service's threads. The events
// carry no data. The operations follow the system's notification interface,
// in its order, with the platform's types carried as plain values.
#include <atomic>
#include <cstdint>
#include <memory>

#include "broker/AudioPlatform.h"
#include "engine/ClassId.h"

namespace SASM {

class MMNotificationClient {
 public:
  using Handle = AudioPlatform::Handle;

  static constexpr ClassId kUnknownInterface = ClassId::Parse("{00000000-0000-0000-C000-000000000046}");
  static constexpr ClassId kNotificationInterface = ClassId::Parse("{7991EEC9-7E89-4D85-8390-6C703CEC60C0}");
  static constexpr uint32_t kFlowRender = 0;
  static constexpr uint32_t kRoleMultimedia = 1;

  // Registers at once; a failure leaves a client that is never called back.
  MMNotificationClient(AudioPlatform& platform, Handle sourceProcess);
  MMNotificationClient(const MMNotificationClient&) = delete;
  MMNotificationClient& operator=(const MMNotificationClient&) = delete;

  // 0 for the unknown and notification interfaces, 0x80004002 otherwise; the object itself is given.
  virtual int32_t QueryInterface(const ClassId& interfaceId, void** object);
  virtual uint32_t AddRef();
  // The last one destroys.
  virtual uint32_t Release();
  // Signals the state event when the device is a render endpoint.
  virtual int32_t OnDeviceStateChanged(const char16_t* deviceId, uint32_t newState);
  virtual int32_t OnDeviceAdded(const char16_t* deviceId);
  virtual int32_t OnDeviceRemoved(const char16_t* deviceId);
  // Signals the default event, but for a capture device (any flow but render) only in the multimedia role.
  virtual int32_t OnDefaultDeviceChanged(uint32_t flow, uint32_t role, const char16_t* deviceId);
  virtual int32_t OnPropertyValueChanged(const char16_t* deviceId, const ClassId& formatId, uint32_t propertyId);

  // Duplicates the client's event and holds it in place of the one before, which is closed.
  bool SetDefaultDeviceChangeEvent(Handle event) { return SetEvent(defaultDeviceChangeEvent, event); }
  bool SetDeviceStateChangeEvent(Handle event) { return SetEvent(deviceStateChangeEvent, event); }

  bool registered = false;
  // Valid in this process and the caller's to close.
  Handle sourceProcess;
  std::unique_ptr<IAudioDeviceEnumerator> enumerator;
  // Written on the apartment thread and read on the audio threads.
  std::atomic<Handle> defaultDeviceChangeEvent{0};
  std::atomic<Handle> deviceStateChangeEvent{0};
  std::atomic<uint32_t> refCount{1};

 protected:
  // Shuts down: unregisters, closes the events and releases the enumerator.
  virtual ~MMNotificationClient();

 private:
  void Register();
  bool SetEvent(std::atomic<Handle>& field, Handle event);

  AudioPlatform& platform_;
};

}  // namespace SASM
