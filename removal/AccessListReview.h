#pragma once
// The rules by which an object's access list is repaired for one well-known
// account: which entries go, and whether a grant must still be added. The
// platform reads the entries and applies the answer.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace SASM {

class AccessListReview {
 public:
  static constexpr uint8_t kAllowEntry = 0;
  static constexpr uint8_t kDenyEntry = 1;

  // One well-known account: its code, the name entries are compared by, and its
  // identity's sub-authorities under the NT authority (5).
  struct Account {
    int32_t code;
    const char* name;
    uint8_t subAuthorityCount;
    uint32_t subAuthorities[2];
  };

  static constexpr Account kAccounts[] = {
      {26, "BUILTIN\\Administrators", 2, {32, 544}},
      {22, "NT AUTHORITY\\SYSTEM", 1, {18, 0}},
      {27, "BUILTIN\\Users", 2, {32, 545}},
  };

  // One entry of the list as the platform reports it.
  struct Entry {
    uint8_t type;
    uint32_t mask;
    // "domain\name" as the system looks it up, or "unknown".
    std::string accountName;
    // Whether the entry's identity is the account's own.
    bool isAccount;
  };

  struct Decision {
    bool grantNeeded = true;
    // Positions to delete, highest first, so each deletion leaves the rest in place.
    std::vector<size_t> deletions;
  };

  static const Account* FindAccount(int32_t code);
  // For a file: walked from the last entry back. An allow entry of the account's
  // name with exactly the mask means no grant is needed; every deny entry of the
  // account goes, whatever its mask. Other objects keep their list and get the grant.
  static Decision Review(const std::vector<Entry>& entries, bool isFile, const Account& account, uint32_t mask);
};

}  // namespace SASM
