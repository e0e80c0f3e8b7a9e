#pragma once
// The audio notification family: a broker object's notification clients,
// named to the client by their own addresses. The methods answer a bare 0 or
// 1, never an error code.
#include <cstdint>
#include <vector>

#include "broker/AudioPlatform.h"
#include "broker/MMNotificationClient.h"

namespace SASM {

class BrokerAudioMethods {
 public:
  using Cookie = intptr_t;
  using Handle = AudioPlatform::Handle;

  explicit BrokerAudioMethods(AudioPlatform& platform) : platform_(platform) {}
  BrokerAudioMethods(const BrokerAudioMethods&) = delete;
  BrokerAudioMethods& operator=(const BrokerAudioMethods&) = delete;
  ~BrokerAudioMethods() { ReleaseAll(); }

  // Always 0; the cookie is null when the client could not be allocated, and that null is listed too.
  int32_t Create(Handle sourceProcess, Cookie* cookie);
  int32_t SetDefaultDeviceChangeEvent(Cookie cookie, Handle event);
  int32_t SetDeviceStateChangeEvent(Cookie cookie, Handle event);
  // Releases the client and keeps it listed: a second call with the cookie still answers 0.
  int32_t Destroy(Cookie cookie);
  // The broker object's own references, at its destruction.
  void ReleaseAll();

  // The client a cookie names while it lives, else null.
  MMNotificationClient* Find(Cookie cookie) const;
  size_t Count() const { return notificationClients_.size(); }

 private:
  struct Entry {
    MMNotificationClient* client;
    // Set when the listed reference has been given back; the address is kept only to be recognised.
    bool released;
  };

  AudioPlatform& platform_;
  std::vector<Entry> notificationClients_;
};

}  // namespace SASM
