// The preference family on the live object: BSTRs in and out, the rules in
// BrokerPrefMethods.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <string>

#include "broker/BrokerHresult.h"

namespace SASM {
namespace {

const char16_t* Text(const wchar_t* text) { return reinterpret_cast<const char16_t*>(text); }

// The version as the client's string: the result stands or falls with the string alone.
HRESULT GiveVersion(HRESULT result, const std::u16string& text, BSTR* out) {
  if (!out) return result;
  *out = nullptr;
  if (result != BrokerHresult::kOk) return result;
  *out = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
  return *out ? BrokerHresult::kOk : BrokerHresult::kFail;
}

}  // namespace

HRESULT CoLumenBrokerServer::BrokerPrefGetLumenPlayerVersion(BSTR* p_string) {
  std::u16string text;
  return GiveVersion(prefMethods_.GetLumenPlayerVersion(p_string ? &text : nullptr), text, p_string);
}

HRESULT CoLumenBrokerServer::BrokerPrefGetAndDeleteLumenPlayerVersion(BSTR* p_string) {
  std::u16string text;
  return GiveVersion(prefMethods_.GetAndDeleteLumenPlayerVersion(p_string ? &text : nullptr), text, p_string);
}

HRESULT CoLumenBrokerServer::BrokerPrefDeleteLumenPlayerVersion() { return prefMethods_.DeleteLumenPlayerVersion(); }

HRESULT CoLumenBrokerServer::BrokerPrefGetExceptionDialogSize(ULONG* p_width, ULONG* p_height) {
  static_assert(sizeof(ULONG) == sizeof(uint32_t));
  return prefMethods_.GetExceptionDialogSize(reinterpret_cast<uint32_t*>(p_width), reinterpret_cast<uint32_t*>(p_height));
}

HRESULT CoLumenBrokerServer::BrokerPrefSetExceptionDialogSize(ULONG p_width, ULONG p_height) {
  return prefMethods_.SetExceptionDialogSize(p_width, p_height);
}

HRESULT CoLumenBrokerServer::BrokerPrefMarkAutoUpdaterForRun(BSTR p_xmlFromServer) {
  return prefMethods_.MarkAutoUpdaterForRun(Text(p_xmlFromServer));
}

HRESULT CoLumenBrokerServer::BrokerDelayScreensaver() { return prefMethods_.DelayScreensaver(); }

HRESULT CoLumenBrokerServer::BrokerGetDirectInputCount(ULONG* p_count) {
  return prefMethods_.GetDirectInputCount(reinterpret_cast<uint32_t*>(p_count));
}

HRESULT CoLumenBrokerServer::BrokerIsDriveAvailable(LPWSTR p_lpwRootPathName) {
  return prefMethods_.IsDriveAvailable(Text(p_lpwRootPathName));
}

}  // namespace SASM
