#pragma once
// The broker server's life in its process: COM started, the class object
// published, messages pumped until the last broker object goes, then all of it
// undone. Everything runs on the thread that calls RunBrokerServer.
#include "engine/win32/WindowsApi.h"

#include <cstdint>

#include "broker/win32/CoLumenBrokerServerFactory.h"

namespace SASM {

class HostCallbacks;

class BrokerServerLifecycle {
 public:
  // Returns only when the server has been told to quit: the quit message's
  // code, or 0x80004005 when COM or the registration failed.
  static int32_t RunBrokerServer(HostCallbacks* host);
  // 0x80004005 once a registration has been made in this process, even after
  // its revocation: a process serves one registration in its life.
  static HRESULT RegisterBrokerClassObject(int32_t enable, HostCallbacks* host);
  static HRESULT RevokeBrokerClassObject();
  static bool CanUnload(const CoLumenBrokerServer::Factory* factory);
  // Stops the file protection worker if this process ever started it; the
  // first protection query of a file open starts it.
  static void StopWorkerTaskIfStarted();

  // The process's one class object, null before registration and after revocation.
  static inline CoLumenBrokerServer::Factory* factory = nullptr;
  static inline DWORD registrationCookie = 0;
};

}  // namespace SASM
