#include "broker/win32/CoLumenBrokerServerFactory.h"

#include <new>

namespace SASM {

HRESULT CoLumenBrokerServer::Factory::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (riid == IID_IUnknown || riid == IID_IClassFactory) {
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG CoLumenBrokerServer::Factory::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refCount)); }

ULONG CoLumenBrokerServer::Factory::Release() {
  LONG count = InterlockedDecrement(&refCount);
  if (count == 0) delete this;
  return static_cast<ULONG>(count);
}

HRESULT CoLumenBrokerServer::Factory::CreateInstance(IUnknown* outer, REFIID riid, void** object) {
  if (outer) return CLASS_E_NOAGGREGATION;
  auto* server = new (std::nothrow) CoLumenBrokerServer(host);
  if (!server) return E_OUTOFMEMORY;
  HRESULT result = server->QueryInterface(riid, object);
  server->Release();
  return result;
}

HRESULT CoLumenBrokerServer::Factory::LockServer(BOOL lock) {
  if (lock) {
    InterlockedIncrement(&lockCount);
  } else {
    InterlockedDecrement(&lockCount);
  }
  return S_OK;
}

}  // namespace SASM
