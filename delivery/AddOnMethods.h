#pragma once
// The broker's add-on family: downloads held by cookies, stored through
// AddOnStore, and products that are started, asked their version or probed
// only while their signed digest holds. The Win32 methods convert their
// arguments and call here.
#include <cstdint>

#include "broker/BrokerCookieTable.h"
#include "delivery/AddOnStore.h"
#include "delivery/IAddOnProcesses.h"
#include "delivery/IHttpClient.h"

namespace SASM {

class HostCallbacks;

class AddOnMethods {
 public:
  static constexpr int32_t kOk = 0;
  static constexpr int32_t kNotRunning = 1;
  static constexpr int32_t kInvalidArgument = static_cast<int32_t>(0x80070057);
  static constexpr int32_t kFailure = static_cast<int32_t>(0x80004005);

  static constexpr char kAgent[] = "Tidewater Lumen";
  static constexpr uint16_t kHttpPort = 80;
  static constexpr uint16_t kHttpsPort = 443;
  // Reload, and keep nothing in the cache; secure where asked.
  static constexpr uint32_t kRequestFlags = 0x84000000;
  static constexpr uint32_t kSecureFlag = 0x00800000;
  static constexpr uint32_t kFirstBadStatus = 400;
  static constexpr char kRunningMutexPrefix[] = "HalcyonicsMutexGamma";
  static constexpr char16_t kDigestMark[] = u"DIGEST#";

  AddOnMethods(BrokerCookieTable& cookies, AddOnStore& store, IHttpClient& http, IAddOnProcesses& processes,
               HostCallbacks* host)
      : cookies_(cookies), store_(store), http_(http), processes_(processes), host_(host) {}

  // url is narrow text in the system code page; null when it could not be converted.
  int32_t OpenDownload(const char* url, uint32_t& cookie);
  int32_t UpdateDownload(uint32_t cookie, uint32_t* position, uint32_t* length);
  // A null name abandons the download; "DIGEST#" before a name stores the product's digest.
  int32_t CloseDownload(uint32_t cookie, const char16_t* name, uint32_t* resultCode);
  int32_t Launch(const char16_t* name, const char16_t* parameters);
  int32_t GetVersion(const char16_t* name, uint32_t* mostSignificant, uint32_t* leastSignificant);
  int32_t IsRunning(const char16_t* name);

 private:
  // The host's anchor override, asked afresh for each use.
  std::u16string OverridePath();
  // The product's executable when its name is good and its digest holds.
  bool VerifiedExecutable(const char16_t* name, std::u16string& path);

  BrokerCookieTable& cookies_;
  AddOnStore& store_;
  IHttpClient& http_;
  IAddOnProcesses& processes_;
  HostCallbacks* host_;
};

}  // namespace SASM
