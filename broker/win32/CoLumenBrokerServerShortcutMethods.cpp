// The shortcut and icon family on the live object. Each method converts the
// interface's types and calls the portable family, where every rule lives; a
// null BSTR is empty text. The rate limit of desktop shortcuts is the
// process's, shared by every client.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <string>

#include "broker/BrokerHresult.h"
#include "broker/BrokerShortcutMethods.h"
#include "broker/win32/Win32ShortcutPlatform.h"
#include "broker/win32/Win32SignedMessageCheck.h"

namespace SASM {
namespace {

const char16_t* Text(BSTR text) { return reinterpret_cast<const char16_t*>(text); }

// The broker's apartment thread is the only caller, so the limit needs no lock.
ShortcutRateLimit& ProcessRateLimit() {
  static ShortcutRateLimit limit;
  return limit;
}

// An input byte array held accessed for as long as the call looks at it.
class AccessedArray {
 public:
  explicit AccessedArray(SAFEARRAY* array) : array_(array) {
    if (!array_) return;
    view_.present = true;
    view_.shape.dimensions = SafeArrayGetDim(array_);
    view_.shape.elementSize = SafeArrayGetElemsize(array_);
    LONG lowerBound = 0;
    if (SUCCEEDED(SafeArrayGetLBound(array_, 1, &lowerBound))) view_.shape.lowerBound = lowerBound;
    if (view_.shape.dimensions >= 1) view_.shape.count = array_->rgsabound[0].cElements;
    void* data = nullptr;
    if (SUCCEEDED(SafeArrayAccessData(array_, &data))) {
      accessed_ = true;
      view_.data = static_cast<const uint8_t*>(data);
    }
    if (!view_.data) view_.shape.count = 0;
  }
  AccessedArray(const AccessedArray&) = delete;
  AccessedArray& operator=(const AccessedArray&) = delete;
  ~AccessedArray() {
    if (accessed_) SafeArrayUnaccessData(array_);
  }
  const ShortcutByteArray& view() const { return view_; }

 private:
  SAFEARRAY* array_;
  bool accessed_ = false;
  ShortcutByteArray view_;
};

// The family over the real platform, for one call.
template <typename Call>
HRESULT WithFamily(HostCallbacks* host, Call call) {
  Win32ShortcutPlatform platform;
  Win32SignedMessageCheck signatures(host);
  BrokerShortcutMethods methods(platform, ProcessRateLimit(), signatures);
  return call(methods);
}

HRESULT IconPath(HostCallbacks* host, BSTR fileName, bool overwrite, BSTR* iconPath) {
  if (!iconPath) return BrokerHresult::kFail;
  std::u16string path;
  HRESULT result = WithFamily(
      host, [&](BrokerShortcutMethods& methods) { return methods.CreateIconPath(Text(fileName), overwrite, path); });
  if (FAILED(result)) return result;
  *iconPath = SysAllocString(reinterpret_cast<const OLECHAR*>(path.c_str()));
  return *iconPath ? result : BrokerHresult::kFail;
}

}  // namespace

HRESULT CoLumenBrokerServer::BrokerCreateIconPath(BSTR p_fileName, BSTR* p_iconPath) {
  return IconPath(Host(), p_fileName, false, p_iconPath);
}

HRESULT CoLumenBrokerServer::BrokerCreateIconPathV2(BSTR p_fileName, BSTR* p_iconPath, LONG p_overwrite) {
  return IconPath(Host(), p_fileName, p_overwrite == 1, p_iconPath);
}

HRESULT CoLumenBrokerServer::BrokerCreateDesktopShortcut(BSTR fileName, BSTR url, BSTR iconPath, ULONG flags) {
  return WithFamily(Host(), [&](BrokerShortcutMethods& methods) {
    return methods.CreateDesktopShortcut(Text(fileName), Text(url), Text(iconPath), flags);
  });
}

HRESULT CoLumenBrokerServer::BrokerCreateInternetShortcut(BSTR fileName, BSTR url, BSTR iconPath,
                                                          SAFEARRAY* p_signed_auth_data, SAFEARRAY* p_strings,
                                                          ULONG flags) {
  AccessedArray signedData(p_signed_auth_data);
  AccessedArray strings(p_strings);
  return WithFamily(Host(), [&](BrokerShortcutMethods& methods) {
    return methods.CreateInternetShortcut(Text(fileName), Text(url), Text(iconPath), signedData.view(), strings.view(),
                                          flags);
  });
}

}  // namespace SASM
