#pragma once
// Audio notification's platform in memory: a device table, an enumerator that
// keeps the clients registered with it and fires their callbacks on demand,
// and kernel handles that are numbers, with every duplicate, close and signal
// kept for the test to read.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "broker/AudioPlatform.h"
#include "broker/MMNotificationClient.h"

namespace SASM {

class FakeAudioPlatform : public AudioPlatform {
 public:
  // Device ids and their data flow (0 render, 1 capture).
  std::map<std::u16string, uint32_t> devices;
  bool enumeratorFails = false;
  bool registrationFails = false;
  // Duplicating from this process fails.
  Handle deadProcess = 0;

  std::vector<MMNotificationClient*> registered;
  int enumeratorsAlive = 0;
  std::set<Handle> openHandles;
  std::vector<Handle> closed;
  std::vector<Handle> signalled;

  std::unique_ptr<IAudioDeviceEnumerator> CreateEnumerator() override {
    if (enumeratorFails) return nullptr;
    return std::make_unique<Enumerator>(*this);
  }
  bool DuplicateFromProcess(Handle sourceProcess, Handle handle, Handle& duplicate) override {
    if (sourceProcess == deadProcess) return false;
    duplicate = nextHandle_++;
    openHandles.insert(duplicate);
    return true;
  }
  void CloseHandle(Handle handle) override {
    openHandles.erase(handle);
    closed.push_back(handle);
  }
  void SignalEvent(Handle event) override { signalled.push_back(event); }

  // The system's callbacks, to every registered client.
  void FireDefaultDeviceChanged(uint32_t flow, uint32_t role) {
    for (MMNotificationClient* client : registered) client->OnDefaultDeviceChanged(flow, role, u"{0.0.0.00000000}.x");
  }
  void FireDeviceStateChanged(const std::u16string& id) {
    for (MMNotificationClient* client : registered) client->OnDeviceStateChanged(id.c_str(), 1);
  }

 private:
  class Enumerator : public IAudioDeviceEnumerator {
   public:
    explicit Enumerator(FakeAudioPlatform& platform) : platform_(platform) { ++platform_.enumeratorsAlive; }
    ~Enumerator() override { --platform_.enumeratorsAlive; }
    bool RegisterClient(MMNotificationClient& client) override {
      if (platform_.registrationFails) return false;
      platform_.registered.push_back(&client);
      return true;
    }
    void UnregisterClient(MMNotificationClient& client) override {
      std::erase(platform_.registered, &client);
    }
    bool GetDataFlow(const char16_t* deviceId, uint32_t& flow) override {
      auto found = platform_.devices.find(deviceId);
      if (found == platform_.devices.end()) return false;
      flow = found->second;
      return true;
    }

   private:
    FakeAudioPlatform& platform_;
  };

  Handle nextHandle_ = 0x1000;
};

}  // namespace SASM
