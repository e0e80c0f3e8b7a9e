#include "broker/win32/BrokerServerLifecycle.h"

#include <new>

#include "broker/Task.h"

namespace SASM {

int32_t BrokerServerLifecycle::RunBrokerServer(HostCallbacks* host) {
  if (FAILED(CoInitialize(nullptr))) return E_FAIL;
  int32_t exitCode = E_FAIL;
  if (SUCCEEDED(RegisterBrokerClassObject(1, host))) {
    MSG message{};
    // Only 0 ends the loop: -1 would go round again with the old message, but
    // with no window named and a message of our own GetMessageW never answers it.
    while (GetMessageW(&message, nullptr, 0, 0) != 0) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    exitCode = static_cast<int32_t>(message.wParam);
    RevokeBrokerClassObject();
  }
  StopWorkerTaskIfStarted();
  CoUninitialize();
  return exitCode;
}

HRESULT BrokerServerLifecycle::RegisterBrokerClassObject(int32_t enable, HostCallbacks* host) {
  if (registrationCookie != 0) return E_FAIL;
  if (!enable) return S_OK;
  // Without memory COM is asked to register nothing, and refuses.
  factory = new (std::nothrow) CoLumenBrokerServer::Factory(host);
  return CoRegisterClassObject(CLSID_LumenBrokerImp6, factory, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                               &registrationCookie);
}

HRESULT BrokerServerLifecycle::RevokeBrokerClassObject() {
  if (registrationCookie == 0) return E_FAIL;
  // The cookie is kept: this process will not register again.
  HRESULT result = CoRevokeClassObject(registrationCookie);
  if (factory) {
    factory->Release();
    factory = nullptr;
  }
  return result;
}

bool BrokerServerLifecycle::CanUnload(const CoLumenBrokerServer::Factory* factory) {
  return factory->objectCount == 0 && factory->lockCount == 0;
}

void BrokerServerLifecycle::StopWorkerTaskIfStarted() { StopTask(); }

}  // namespace SASM
