#pragma once
// A proxy DLL of the broker's interfaces registered over the product's own
// entries while the object lives. Wine's automation marshaller refuses the
// interfaces that have LPWSTR arguments; the test-only LumenBrokerProxy.dll
// marshals them instead. The product registers none.
#include "engine/win32/WindowsApi.h"

#include <string>

#include "engine/win32/ScopedLibrary.h"

namespace SASM {

class BrokerProxyRegistration {
 public:
  explicit BrokerProxyRegistration(const std::wstring& dllPath);
  BrokerProxyRegistration(const BrokerProxyRegistration&) = delete;
  BrokerProxyRegistration& operator=(const BrokerProxyRegistration&) = delete;
  // The proxy's removal takes the interface keys with it, so a registration of
  // the server found at the start is written again.
  ~BrokerProxyRegistration();

  bool registered() const { return registered_; }

 private:
  ScopedLibrary proxy_;
  bool registered_ = false;
  bool serverWasRegistered_ = false;
  std::string serverPath_;
};

}  // namespace SASM
