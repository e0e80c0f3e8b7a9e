#include "broker/AuditedFileOpener.h"

#include <string>
#include <string_view>

#include "broker/BrokerFileProtectionInfo.h"
#include "broker/BrokerFileRules.h"
#include "broker/BrokerHresult.h"

namespace SASM {

int32_t AuditedFileOpener::Open(const char16_t* pFileName, const char16_t* pRemoteUrl, uint32_t p_hwnd,
                                uint32_t* p_fileCookie) {
  // Read-only, no truncation: only a refusal by protection goes further.
  int32_t plain = methods_.CreateFile(pFileName, 1, 0, p_fileCookie);
  if (plain != BrokerHresult::kAccessDenied) return plain;
  if (!serverIdentities_.HasIdentity()) return BrokerHresult::kAccessDenied;

  MString path = policy_.ExpandBrokerPath(pFileName);
  BrokerFileProtectionInfo info(protection_, path.Data());
  if (!info.IsProtected()) return BrokerHresult::kAccessDenied;
  uint32_t length = 0;
  const char16_t* identity = info.GetIdentity(length);
  if (identity && !serverIdentities_.Contains(std::u16string_view(identity, length))) {
    return BrokerHresult::kAccessDenied;
  }

  uint64_t window = WidenWindow(p_hwnd);
  if (!owners_.IsDialogOwnerAllowed(window)) return BrokerHresult::kAccessDenied;
  if (!HasConsent(identity, window, path, pRemoteUrl)) return BrokerHresult::kAccessDenied;

  BrokerFileRules::OpenArguments open = BrokerFileRules::ForOpen(1, 0);
  BrokerFilePlatform::Handle handle = BrokerFilePlatform::kInvalidHandle;
  BrokerFileRules::OpenForReading(files_, path.Data(), open.access, open.disposition, open.flags, handle);
  if (BrokerFileRules::IsOpenFailure(handle)) return BrokerHresult::kAccessDenied;
  uint32_t cookie = 0;
  if (!cookies_.AddFileCookie(handle, cookie, true, path.Data(), nullptr)) {
    files_.CloseHandle(handle);
    return BrokerHresult::kAccessDenied;
  }
  if (p_fileCookie) *p_fileCookie = cookie;
  return BrokerHresult::kOk;
}

bool AuditedFileOpener::HasConsent(const char16_t* identity, uint64_t window, const MString& path,
                                   const char16_t* remoteUrl) {
  if (!identity || window == 0 || window == ~uint64_t{0}) return false;
  // The consent is for the caller's first identity, or for nobody in particular.
  EnterpriseIdentityList callerIdentities(protection_, EnterpriseIdentityList::kCallingClient);
  std::u16string target(callerIdentities.Identity(0));
  std::u16string_view whole = path.View();
  std::u16string leaf(whole.substr(whole.find_last_of(u"\\/") + 1));
  return protection_.RequestAccessWithAudit(identity, target.c_str(), window, leaf.c_str(),
                                            remoteUrl ? remoteUrl : u"");
}

}  // namespace SASM
