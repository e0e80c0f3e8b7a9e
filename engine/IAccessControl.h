#pragma once
// Access-list seam: grants for well-known accounts on a named object (a file
// path, or a key named "MACHINE\..." or "CLASSES_ROOT\..."). Results are the
// platform's status numbers, 0 for success.
#include <cstdint>
#include <string_view>

namespace SASM {

namespace SecuredObject {
constexpr int32_t kFile = 1;
constexpr int32_t kRegistryKey = 4;
}  // namespace SecuredObject

// Codes of the accounts, as the platform numbers its well-known identities.
namespace WellKnownAccount {
constexpr int32_t kLocalSystem = 22;
constexpr int32_t kAdministrators = 26;
constexpr int32_t kUsers = 27;
}  // namespace WellKnownAccount

class IAccessControl {
 public:
  virtual ~IAccessControl() = default;
  // Makes sure the account is allowed exactly this mask: on a file an existing
  // grant is kept and the account's deny entries go; otherwise a grant is merged in.
  virtual int32_t EnsureAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) = 0;
  // Takes the account's explicit grant of exactly this mask away again.
  virtual int32_t RemoveAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) = 0;
};

}  // namespace SASM
