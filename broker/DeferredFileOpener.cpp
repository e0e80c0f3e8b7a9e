#include "broker/DeferredFileOpener.h"

#include "broker/BrokerFileRules.h"
#include "broker/EnterpriseIdentityList.h"

namespace SASM {

uint64_t DeferredFileOpener::Open(BrokerCookieRecord& record) {
  if (!record.deferredOpen) return record.handle;
  const char16_t* path = record.filePath ? record.filePath->c_str() : nullptr;
  if (!files_.IsBound(BrokerFilePlatform::Function::kCreateFile)) {
    record.deferredOpen.reset();
    return BrokerCookieRecord::kNoHandle;
  }

  DeferredOpen& open = *record.deferredOpen;
  bool hasIdentity = open.identity && !open.identity->empty();
  if (hasIdentity && (open.desiredAccess & FileAccess::kGenericWrite) != 0) {
    EnterpriseIdentityList serverIdentities(protection_, EnterpriseIdentityList::kServerProcess);
    if (serverIdentities.HasIdentity() && !Protect(path, open)) {
      record.deferredOpen.reset();
      return BrokerCookieRecord::kNoHandle;
    }
  }

  BrokerFilePlatform::Handle handle = BrokerFilePlatform::kInvalidHandle;
  files_.CreateFile(path, open.desiredAccess, open.shareMode, open.creationDisposition, open.flagsAndAttributes,
                    handle);
  marks_.MarkAsAttachment(path);
  record.deferredOpen.reset();
  record.handle = handle;
  return handle;
}

bool DeferredFileOpener::Protect(const char16_t* path, DeferredOpen& open) {
  FileAttributeData attributes;
  bool exists = files_.GetFileAttributesEx(path, attributes) == 0;
  if (BrokerFileRules::MustCreateBeforeProtecting(exists, open.creationDisposition)) {
    BrokerFilePlatform::Handle created = BrokerFilePlatform::kInvalidHandle;
    files_.CreateFile(path, FileAccess::kGenericWrite, 0, FileDisposition::kCreateAlways, FileFlag::kNormal, created);
    if (BrokerFileRules::IsOpenFailure(created)) return false;
    files_.CloseHandle(created);
  }
  // The file is there now; creating it again would lose its protection.
  open.creationDisposition = FileDisposition::kOpenExisting;
  if (!protection_.CanProtectToIdentity()) return true;
  return protection_.ProtectToIdentity(path, open.identity->c_str()) >= 0;
}

}  // namespace SASM
