#include "removal/AccessListReview.h"

#include <gtest/gtest.h>

using SASM::AccessListReview;
using Entry = AccessListReview::Entry;

namespace {

constexpr uint8_t kAllow = AccessListReview::kAllowEntry;
constexpr uint8_t kDeny = AccessListReview::kDenyEntry;
const AccessListReview::Account& Users() { return *AccessListReview::FindAccount(27); }

TEST(AccessListReview, AnEnglishGrantWithTheSameMaskNeedsNoOther) {
  std::vector<Entry> entries = {{kAllow, 0x1F01FF, "NT AUTHORITY\\SYSTEM", false},
                                {kAllow, 0x1200A9, "BUILTIN\\Users", true}};
  EXPECT_FALSE(AccessListReview::Review(entries, true, Users(), 0x1200A9).grantNeeded);
  EXPECT_TRUE(AccessListReview::Review(entries, true, Users(), 0x1F01FF).grantNeeded) << "another mask";
  entries[1].accountName = "VORDEFINIERT\\Benutzer";
  EXPECT_TRUE(AccessListReview::Review(entries, true, Users(), 0x1200A9).grantNeeded)
      << "a localised name is not recognised, so a further grant is added";
}

TEST(AccessListReview, EveryDenyEntryOfTheAccountGoesHighestFirst) {
  std::vector<Entry> entries = {{kDeny, 0x2, "BUILTIN\\Users", true},
                                {kDeny, 0x2, "BUILTIN\\Guests", false},
                                {kAllow, 0x1200A9, "BUILTIN\\Users", true},
                                {kDeny, 0x1F01FF, "unknown", true}};
  AccessListReview::Decision decision = AccessListReview::Review(entries, true, Users(), 0x1200A9);
  EXPECT_EQ(decision.deletions, (std::vector<size_t>{3, 0}));
  EXPECT_FALSE(decision.grantNeeded);
}

TEST(AccessListReview, OtherObjectsAlwaysGetTheGrantAndKeepTheirList) {
  std::vector<Entry> entries = {{kDeny, 0x20019, "BUILTIN\\Users", true},
                                {kAllow, 0x20019, "BUILTIN\\Users", true}};
  AccessListReview::Decision decision = AccessListReview::Review(entries, false, Users(), 0x20019);
  EXPECT_TRUE(decision.grantNeeded);
  EXPECT_TRUE(decision.deletions.empty());
}

}  // namespace
