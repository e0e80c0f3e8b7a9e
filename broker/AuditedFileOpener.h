#pragma once
// BrokerOpenFileWithAuditingInfo: a read open that the plain open refused
// goes ahead when the file is protected to one of the server's own enterprise
// identities and the user, asked through the client's window, consents to
// letting it go to the address the client names. The consent is audited.
#include <cstdint>

#include "broker/BrokerCookieTable.h"
#include "broker/BrokerFileMethods.h"
#include "broker/BrokerFilePlatform.h"
#include "broker/BrokerPathPolicy.h"
#include "broker/DialogOwnerPolicy.h"
#include "broker/EnterpriseIdentityList.h"
#include "broker/EnterpriseProtectionPlatform.h"

namespace SASM {

class AuditedFileOpener {
 public:
  AuditedFileOpener(BrokerFileMethods& methods, BrokerFilePlatform& files, EnterpriseProtectionPlatform& protection,
                    BrokerPathPolicy& policy, BrokerCookieTable& cookies, DialogOwnerPolicy& owners,
                    const EnterpriseIdentityList& serverIdentities)
      : methods_(methods),
        files_(files),
        protection_(protection),
        policy_(policy),
        cookies_(cookies),
        owners_(owners),
        serverIdentities_(serverIdentities) {}
  AuditedFileOpener(const AuditedFileOpener&) = delete;
  AuditedFileOpener& operator=(const AuditedFileOpener&) = delete;

  // Any refusal past the plain open is 0x80070005.
  int32_t Open(const char16_t* pFileName, const char16_t* pRemoteUrl, uint32_t p_hwnd, uint32_t* p_fileCookie);

  // A client's window arrives as 32 bits and is sign-extended, as every handle is.
  static uint64_t WidenWindow(uint32_t window) {
    return static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(window)));
  }

 private:
  // Whether the user lets the file protected to `identity` go to the caller.
  bool HasConsent(const char16_t* identity, uint64_t window, const MString& path, const char16_t* remoteUrl);

  BrokerFileMethods& methods_;
  BrokerFilePlatform& files_;
  EnterpriseProtectionPlatform& protection_;
  BrokerPathPolicy& policy_;
  BrokerCookieTable& cookies_;
  DialogOwnerPolicy& owners_;
  const EnterpriseIdentityList& serverIdentities_;
};

}  // namespace SASM
