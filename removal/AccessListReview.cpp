#include "removal/AccessListReview.h"

namespace SASM {

const AccessListReview::Account* AccessListReview::FindAccount(int32_t code) {
  for (const Account& account : kAccounts) {
    if (account.code == code) return &account;
  }
  return nullptr;
}

AccessListReview::Decision AccessListReview::Review(const std::vector<Entry>& entries, bool isFile,
                                                    const Account& account, uint32_t mask) {
  Decision decision;
  if (!isFile) return decision;
  for (size_t index = entries.size(); index-- > 0;) {
    const Entry& entry = entries[index];
    // Names as the system reports them: only where they are English is an existing grant recognised.
    if (entry.type == kAllowEntry && entry.accountName == account.name && entry.mask == mask)
      decision.grantNeeded = false;
    if (entry.type == kDenyEntry && entry.isAccount) decision.deletions.push_back(index);
  }
  return decision;
}

}  // namespace SASM
