#pragma once
// Opens the file of a cookie made by a save dialog, on the first call that
// needs its handle. A file chosen for an enterprise identity is protected to
// it first; whatever the open gives, the file gets the attachment mark.
#include <cstdint>

#include "broker/BrokerCookieRecord.h"
#include "broker/BrokerFilePlatform.h"
#include "broker/EnterpriseProtectionPlatform.h"
#include "broker/InternetMarkPlatform.h"

namespace SASM {

class DeferredFileOpener {
 public:
  DeferredFileOpener(BrokerFilePlatform& files, EnterpriseProtectionPlatform& protection,
                     InternetMarkPlatform& marks)
      : files_(files), protection_(protection), marks_(marks) {}

  // Opens the record's file with the values its DeferredOpen keeps, frees the
  // DeferredOpen, and answers the handle, which is all ones on failure. The
  // handle is stored in the record unless a step before the open failed.
  uint64_t Open(BrokerCookieRecord& record);
  // BrokerCookieTable's DeferredOpenFunction; the context is a DeferredFileOpener.
  static uint64_t OpenRecord(void* context, BrokerCookieRecord& record) {
    return static_cast<DeferredFileOpener*>(context)->Open(record);
  }

 private:
  // The file must be there, protected to the identity, before it is opened.
  bool Protect(const char16_t* path, DeferredOpen& open);

  BrokerFilePlatform& files_;
  EnterpriseProtectionPlatform& protection_;
  InternetMarkPlatform& marks_;
};

}  // namespace SASM
