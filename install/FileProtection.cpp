#include "install/FileProtection.h"

#include <string>

#include "removal/RegistryKeyFamilies.h"

namespace SASM {
namespace {

struct Grant {
  int32_t account;
  uint32_t mask;
};

// The players run with little privilege: users need to read and run the files,
// and administrators and the system keep full control.
constexpr Grant kFileGrants[] = {
    {WellKnownAccount::kAdministrators, 0x1F01FF},  // FILE_ALL_ACCESS
    {WellKnownAccount::kLocalSystem, 0x1F01FF},
    {WellKnownAccount::kUsers, 0x1200A9},  // FILE_GENERIC_READ | FILE_GENERIC_EXECUTE
};

constexpr Grant kRegistryGrants[] = {
    {WellKnownAccount::kUsers, 0x20019},  // KEY_READ
};

void GrantRegistryAccess(void* context, const char* keyName) {
  auto* access = static_cast<IAccessControl*>(context);
  std::u16string name;
  for (const char* p = keyName; *p; ++p) name.push_back(static_cast<unsigned char>(*p));
  for (const Grant& grant : kRegistryGrants)
    access->EnsureAccess(name, SecuredObject::kRegistryKey, grant.account, grant.mask);
}

}  // namespace

bool FileProtection::SetReadOnly(const MString& path, bool on) {
  uint32_t attributes = 0;
  if (platform_.files->GetAttributes(path.View(), attributes) != 0) return false;
  bool isReadOnly = (attributes & FileAttribute::kReadOnly) != 0;
  if (isReadOnly == on) return true;
  uint32_t wanted = on ? attributes | FileAttribute::kReadOnly : attributes & ~FileAttribute::kReadOnly;
  return platform_.files->SetAttributes(path.View(), wanted) == 0;
}

bool FileProtection::ProtectFile(const MString& path, bool on) {
  IAccessControl* access = platform_.access;
  if (on) {
    if (!SetReadOnly(path, true)) return false;
    bool granted = access != nullptr;
    for (const Grant& grant : kFileGrants) {
      if (access && access->EnsureAccess(path.View(), SecuredObject::kFile, grant.account, grant.mask) != 0)
        granted = false;
    }
    return granted;
  }
  bool revoked = access != nullptr;
  for (const Grant& grant : kFileGrants) {
    if (access && access->RemoveAccess(path.View(), SecuredObject::kFile, grant.account, grant.mask) != 0)
      revoked = false;
  }
  return SetReadOnly(path, false) && revoked;
}

void FileProtection::RepairRegistryAccess() {
  if (!platform_.access) return;
  RegistryKeyFamilies::Walk(RegistryKeyFamilies::Family::Control, &GrantRegistryAccess, platform_.access);
}

}  // namespace SASM
