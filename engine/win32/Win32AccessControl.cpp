#include "engine/win32/Win32AccessControl.h"

#include "engine/win32/WindowsApi.h"

#include <aclapi.h>

#include <string>
#include <vector>

#include "engine/win32/Advapi32DllHelper.h"
#include "engine/win32/ScopedLocalMemory.h"
#include "engine/win32/ScopedSid.h"
#include "engine/win32/WideText.h"
#include "removal/AccessListReview.h"

namespace SASM {
namespace {

// "domain\name" as the system reports it, in room for 1,024 bytes; "unknown" when it can't be looked up.
std::string AccountName(PSID sid) {
  char name[512];
  char domain[512];
  DWORD nameSize = sizeof(name), domainSize = sizeof(domain);
  SID_NAME_USE use;
  if (!LookupAccountSidA(nullptr, sid, name, &nameSize, domain, &domainSize, &use)) return "unknown";
  return std::string(domain) + "\\" + name;
}

// Allowed and denied entries share one layout: header, mask, identity.
PSID EntrySid(void* entry) { return &static_cast<ACCESS_ALLOWED_ACE*>(entry)->SidStart; }

// The helper's functions this task needs, and the account's identity.
class AccessTask {
 public:
  AccessTask(const AccessListReview::Account& account, std::u16string_view path, int32_t objectType)
      : sid_(advapi_.FreeSid()), name_(ToWide(path)), objectType_(objectType) {
    ready_ = advapi_.available() && advapi_.GetNamedSecurityInfoW() && advapi_.SetNamedSecurityInfoW() &&
             advapi_.SetEntriesInAclW();
    if (!ready_) return;
    SID_IDENTIFIER_AUTHORITY nt = SECURITY_NT_AUTHORITY;
    ready_ = advapi_.AllocateAndInitializeSid()(&nt, account.subAuthorityCount, account.subAuthorities[0],
                                                account.subAuthorities[1], 0, 0, 0, 0, 0, 0, sid_.receive()) != FALSE;
    if (!ready_) error_ = GetLastError();
  }

  DWORD Error() const { return ready_ ? ERROR_SUCCESS : (error_ ? error_ : ERROR_PROC_NOT_FOUND); }
  const Advapi32DllHelper& Advapi() const { return advapi_; }
  PSID Sid() const { return sid_.get(); }

  // Reads the object's access list; the list lives as long as the task.
  DWORD ReadList() {
    if (DWORD error = Error()) return error;
    PSECURITY_DESCRIPTOR raw = nullptr;
    DWORD status = advapi_.GetNamedSecurityInfoW()(name_.c_str(), static_cast<SE_OBJECT_TYPE>(objectType_),
                                                   DACL_SECURITY_INFORMATION, nullptr, nullptr, &list_, nullptr, &raw);
    descriptor_.reset(raw);
    return status;
  }
  PACL List() const { return list_; }

  DWORD WriteList(PACL list) {
    return advapi_.SetNamedSecurityInfoW()(name_.data(), static_cast<SE_OBJECT_TYPE>(objectType_),
                                           DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
  }

 private:
  Advapi32DllHelper advapi_;
  ScopedSid sid_;
  bool ready_ = false;
  DWORD error_ = ERROR_SUCCESS;
  std::wstring name_;
  int32_t objectType_;
  PACL list_ = nullptr;
  ScopedLocalMemory descriptor_;
};

}  // namespace

int32_t Win32AccessControl::EnsureAccess(std::u16string_view path, int32_t objectType, int32_t accountCode,
                                         uint32_t mask) {
  const AccessListReview::Account* account = AccessListReview::FindAccount(accountCode);
  if (!account) return ERROR_INVALID_PARAMETER;
  AccessTask task(*account, path, objectType);
  if (DWORD status = task.ReadList()) return static_cast<int32_t>(status);
  const Advapi32DllHelper& advapi = task.Advapi();
  PACL list = task.List();

  std::vector<AccessListReview::Entry> entries;
  for (DWORD index = 0; list && index < list->AceCount; ++index) {
    void* entry = nullptr;
    if (!advapi.GetAce()(list, index, &entry)) entry = nullptr;
    auto* header = static_cast<ACE_HEADER*>(entry);
    // Anything but an allow or deny entry reads as neither, under no name.
    if (!header || (header->AceType != ACCESS_ALLOWED_ACE_TYPE && header->AceType != ACCESS_DENIED_ACE_TYPE)) {
      entries.push_back({0xFF, 0, "unknown", false});
      continue;
    }
    uint8_t type = header->AceType == ACCESS_ALLOWED_ACE_TYPE ? AccessListReview::kAllowEntry
                                                              : AccessListReview::kDenyEntry;
    bool isFile = objectType == SecuredObject::kFile;
    // Names are looked up only where the review reads them.
    entries.push_back({type, static_cast<ACCESS_ALLOWED_ACE*>(entry)->Mask,
                       isFile ? AccountName(EntrySid(entry)) : std::string(),
                       advapi.EqualSid()(EntrySid(entry), task.Sid()) != FALSE});
  }
  AccessListReview::Decision decision =
      AccessListReview::Review(entries, objectType == SecuredObject::kFile, *account, mask);
  for (size_t index : decision.deletions) advapi.DeleteAce()(list, static_cast<DWORD>(index));
  bool grantNeeded = decision.grantNeeded;
  if (!grantNeeded) return static_cast<int32_t>(task.WriteList(list));

  EXPLICIT_ACCESSW grant = {};
  grant.grfAccessPermissions = mask;
  grant.grfAccessMode = GRANT_ACCESS;
  // A key's grant reaches its subkeys: a class is read through them.
  grant.grfInheritance = objectType == SecuredObject::kRegistryKey ? CONTAINER_INHERIT_ACE : NO_INHERITANCE;
  grant.Trustee.TrusteeForm = TRUSTEE_IS_SID;
  grant.Trustee.TrusteeType = TRUSTEE_IS_WELL_KNOWN_GROUP;
  grant.Trustee.ptstrName = static_cast<LPWSTR>(task.Sid());
  PACL rawMerged = nullptr;
  if (DWORD status = advapi.SetEntriesInAclW()(1, &grant, list, &rawMerged)) return static_cast<int32_t>(status);
  ScopedLocalMemory merged(rawMerged);
  return static_cast<int32_t>(task.WriteList(rawMerged));
}

int32_t Win32AccessControl::RemoveAccess(std::u16string_view path, int32_t objectType, int32_t accountCode,
                                         uint32_t mask) {
  const AccessListReview::Account* account = AccessListReview::FindAccount(accountCode);
  if (!account) return ERROR_INVALID_PARAMETER;
  AccessTask task(*account, path, objectType);
  if (DWORD status = task.ReadList()) return static_cast<int32_t>(status);
  const Advapi32DllHelper& advapi = task.Advapi();
  PACL list = task.List();
  if (!list) return ERROR_SUCCESS;
  bool changed = false;
  for (int index = static_cast<int>(list->AceCount) - 1; index >= 0; --index) {
    void* entry = nullptr;
    if (!advapi.GetAce()(list, static_cast<DWORD>(index), &entry)) continue;
    auto* header = static_cast<ACE_HEADER*>(entry);
    // Inherited entries belong to the parent; only the grant made here goes.
    if (header->AceType != ACCESS_ALLOWED_ACE_TYPE || (header->AceFlags & INHERITED_ACE)) continue;
    if (static_cast<ACCESS_ALLOWED_ACE*>(entry)->Mask != mask || !advapi.EqualSid()(EntrySid(entry), task.Sid()))
      continue;
    advapi.DeleteAce()(list, static_cast<DWORD>(index));
    changed = true;
  }
  return changed ? static_cast<int32_t>(task.WriteList(list)) : ERROR_SUCCESS;
}

}  // namespace SASM
