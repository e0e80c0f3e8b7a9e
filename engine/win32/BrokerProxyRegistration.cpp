#include "engine/win32/BrokerProxyRegistration.h"

#include "broker/BrokerRegistration.h"
#include "engine/win32/Win32Registry.h"

namespace SASM {
namespace {

using RegistrationFunction = HRESULT(STDAPICALLTYPE*)();

RegistrationFunction Export(HMODULE proxy, const char* name) {
  return proxy ? reinterpret_cast<RegistrationFunction>(reinterpret_cast<void*>(GetProcAddress(proxy, name))) : nullptr;
}

}  // namespace

BrokerProxyRegistration::BrokerProxyRegistration(const std::wstring& dllPath) {
  Win32Registry registry;
  serverWasRegistered_ = BrokerRegistration::FindBrokerServerPath(registry, serverPath_);
  proxy_.reset(LoadLibraryW(dllPath.c_str()));
  RegistrationFunction registerProxy = Export(proxy_.get(), "DllRegisterServer");
  registered_ = registerProxy && SUCCEEDED(registerProxy());
}

BrokerProxyRegistration::~BrokerProxyRegistration() {
  if (RegistrationFunction unregisterProxy = Export(proxy_.get(), "DllUnregisterServer")) unregisterProxy();
  proxy_.reset();
  if (serverWasRegistered_) {
    Win32Registry registry;
    BrokerRegistration::WriteBrokerRegistration(registry, serverPath_.c_str(), true);
  }
}

}  // namespace SASM
