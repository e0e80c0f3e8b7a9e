#pragma once
// The broker's class object: one per server process, registered for
// LumenBrokerImp6. It makes one broker object per client and keeps the counts
// that decide when the server may end.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include "broker/win32/CoLumenBrokerServer.h"

namespace SASM {

class CoLumenBrokerServer::Factory : public IClassFactory {
 public:
  explicit Factory(HostCallbacks* host) : host(host) {}
  Factory(const Factory&) = delete;
  Factory& operator=(const Factory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  // Creates, asks for the interface, and releases once: an unknown interface
  // destroys the new object at once, and that Release may end the server.
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override;
  // Counts only; it never ends the server, even at zero.
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  LONG refCount = 1;
  LONG lockCount = 0;
  // Live broker objects; they count themselves in and out.
  LONG objectCount = 0;
  HostCallbacks* host;

 protected:
  virtual ~Factory() = default;
};

}  // namespace SASM
