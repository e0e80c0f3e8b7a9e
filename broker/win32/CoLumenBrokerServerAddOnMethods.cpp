// Add-on products: downloads, storage, launch, version and the running probe.
// Each method converts its arguments and forwards to AddOnMethods.
#include "broker/win32/CoLumenBrokerServer.h"

#include <string>

namespace SASM {
namespace {

const char16_t* Text(BSTR text) { return reinterpret_cast<const char16_t*>(text); }

// The URL as narrow text in the system code page; false when it cannot be converted.
bool NarrowUrl(BSTR url, std::string& narrow) {
  const int size = WideCharToMultiByte(CP_ACP, 0, url, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return false;
  narrow.assign(static_cast<size_t>(size), '\0');
  if (WideCharToMultiByte(CP_ACP, 0, url, -1, narrow.data(), size, nullptr, nullptr) <= 0) return false;
  narrow.resize(static_cast<size_t>(size - 1));
  return true;
}

}  // namespace

HRESULT CoLumenBrokerServer::BrokerLMOpenDownload(BSTR p_url, ULONG* p_lmCookie) {
  if (!p_url || !p_lmCookie) return AddOnMethods::kInvalidArgument;
  std::string url;
  const bool converted = NarrowUrl(p_url, url);
  uint32_t cookie = 0;
  const HRESULT result = addOns_.Methods().OpenDownload(converted ? url.c_str() : nullptr, cookie);
  *p_lmCookie = cookie;
  return result;
}

HRESULT CoLumenBrokerServer::BrokerLMUpdateDownload(ULONG p_lmCookie, ULONG* p_pos, ULONG* p_len) {
  static_assert(sizeof(ULONG) == sizeof(uint32_t));
  return addOns_.Methods().UpdateDownload(p_lmCookie, reinterpret_cast<uint32_t*>(p_pos),
                                          reinterpret_cast<uint32_t*>(p_len));
}

HRESULT CoLumenBrokerServer::BrokerLMCloseDownload(ULONG p_lmCookie, BSTR p_applicationName, ULONG* p_resultCode) {
  return addOns_.Methods().CloseDownload(p_lmCookie, Text(p_applicationName),
                                         reinterpret_cast<uint32_t*>(p_resultCode));
}

HRESULT CoLumenBrokerServer::BrokerLMLaunch(BSTR p_applicationName, BSTR p_applicationParams) {
  return addOns_.Methods().Launch(Text(p_applicationName), Text(p_applicationParams));
}

HRESULT CoLumenBrokerServer::BrokerLMGetVersion(BSTR p_applicationName, ULONG* p_fileVersionMS,
                                                ULONG* p_fileVersionLS) {
  return addOns_.Methods().GetVersion(Text(p_applicationName), reinterpret_cast<uint32_t*>(p_fileVersionMS),
                                      reinterpret_cast<uint32_t*>(p_fileVersionLS));
}

HRESULT CoLumenBrokerServer::BrokerLMIsRunning(BSTR p_applicationName) {
  return addOns_.Methods().IsRunning(Text(p_applicationName));
}

}  // namespace SASM
