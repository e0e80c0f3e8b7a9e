// The audio notification family on the live object: pointer-sized values in
// and out, the rules in BrokerAudioMethods.
#include "broker/win32/CoLumenBrokerServer.h"

namespace SASM {

HRESULT CoLumenBrokerServer::BrokerMMNotificationClientCreate(LONG_PTR sourceProcessHandle,
                                                              LONG_PTR* lpClientCookie) {
  static_assert(sizeof(LONG_PTR) == sizeof(BrokerAudioMethods::Cookie));
  return notificationClients_.Create(static_cast<BrokerAudioMethods::Handle>(sourceProcessHandle),
                                     reinterpret_cast<BrokerAudioMethods::Cookie*>(lpClientCookie));
}

HRESULT CoLumenBrokerServer::BrokerMMNotificationClientSetDefaultDeviceChangeEvent(LONG_PTR clientCookie,
                                                                                   LONG_PTR defaultDeviceChangeEvent) {
  return notificationClients_.SetDefaultDeviceChangeEvent(
      clientCookie, static_cast<BrokerAudioMethods::Handle>(defaultDeviceChangeEvent));
}

HRESULT CoLumenBrokerServer::BrokerMMNotificationClientSetDeviceStateChangeEvent(LONG_PTR clientCookie,
                                                                                 LONG_PTR deviceStateChangeEvent) {
  return notificationClients_.SetDeviceStateChangeEvent(clientCookie,
                                                        static_cast<BrokerAudioMethods::Handle>(deviceStateChangeEvent));
}

HRESULT CoLumenBrokerServer::BrokerMMNotificationClientDestroy(LONG_PTR clientCookie) {
  return notificationClients_.Destroy(clientCookie);
}

}  // namespace SASM
