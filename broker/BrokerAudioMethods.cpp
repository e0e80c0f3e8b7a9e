#include "broker/BrokerAudioMethods.h"

#include <new>

namespace SASM {
namespace {
constexpr int32_t kOk = 0;
constexpr int32_t kNotDone = 1;
}  // namespace

int32_t BrokerAudioMethods::Create(Handle sourceProcess, Cookie* cookie) {
  MMNotificationClient* client = new (std::nothrow) MMNotificationClient(platform_, sourceProcess);
  notificationClients_.push_back({client, false});
  if (cookie) *cookie = reinterpret_cast<Cookie>(client);
  return kOk;
}

MMNotificationClient* BrokerAudioMethods::Find(Cookie cookie) const {
  // A released client's address may come back for a new one: only a live entry names a client.
  for (const Entry& entry : notificationClients_) {
    if (entry.client && !entry.released && reinterpret_cast<Cookie>(entry.client) == cookie) return entry.client;
  }
  return nullptr;
}

int32_t BrokerAudioMethods::SetDefaultDeviceChangeEvent(Cookie cookie, Handle event) {
  MMNotificationClient* client = Find(cookie);
  return client && client->SetDefaultDeviceChangeEvent(event) ? kOk : kNotDone;
}

int32_t BrokerAudioMethods::SetDeviceStateChangeEvent(Cookie cookie, Handle event) {
  MMNotificationClient* client = Find(cookie);
  return client && client->SetDeviceStateChangeEvent(event) ? kOk : kNotDone;
}

int32_t BrokerAudioMethods::Destroy(Cookie cookie) {
  if (MMNotificationClient* client = Find(cookie)) {
    for (Entry& entry : notificationClients_) {
      if (entry.client == client && !entry.released) {
        entry.released = true;
        break;
      }
    }
    client->Release();
    return kOk;
  }
  // The entry stays listed, so the cookie still passes the lookup; its reference is gone and isn't given back twice.
  for (const Entry& entry : notificationClients_) {
    if (entry.client && reinterpret_cast<Cookie>(entry.client) == cookie) return kOk;
  }
  return kNotDone;
}

void BrokerAudioMethods::ReleaseAll() {
  for (Entry& entry : notificationClients_) {
    if (entry.client && !entry.released) entry.client->Release();
  }
  notificationClients_.clear();
}

}  // namespace SASM
