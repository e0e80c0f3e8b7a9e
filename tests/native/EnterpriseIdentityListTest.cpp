#include "broker/EnterpriseIdentityList.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"

using SASM::EnterpriseIdentityList;
using SASM::FakeEnterpriseProtectionPlatform;

namespace {

constexpr uint32_t kClient = EnterpriseIdentityList::kCallingClient;
constexpr uint32_t kServer = EnterpriseIdentityList::kServerProcess;

class EnterpriseIdentityListTest : public ::testing::Test {
 protected:
  EnterpriseIdentityListTest() {
    platform.SetProcessIdentities({u"corp.example"});
    platform.SetClientIdentities({u"client.example", u"Other.example"});
  }

  FakeEnterpriseProtectionPlatform platform;
};

}  // namespace

TEST_F(EnterpriseIdentityListTest, TheClientsIdentitiesAreReadUnderImpersonationAndTheProcessesWithout) {
  EnterpriseIdentityList list(platform, kClient);
  ASSERT_EQ(list.Count(), 2u);
  EXPECT_EQ(list.Identity(0), u"client.example");
  EXPECT_EQ(list.Identity(1), u"Other.example");
  EXPECT_TRUE(list.HasIdentity());
  EXPECT_EQ(platform.Impersonations(), 1);
  EXPECT_EQ(platform.Reverts(), 1);
  EXPECT_EQ(platform.OpenTokens(), 0);
  // Asked for the size, then given exactly that.
  std::vector<uint32_t> offered = {0, 2 * sizeof(void*) + 15 * 2 + 14 * 2};
  EXPECT_EQ(platform.OfferedBytes(), offered);

  EnterpriseIdentityList server(platform, kServer);
  EXPECT_EQ(server.Identity(0), u"corp.example");
  EXPECT_EQ(platform.Impersonations(), 1);
}

TEST_F(EnterpriseIdentityListTest, ListsAreEmptyWhenTheyCannotBeRead) {
  platform.SetIdentitiesBound(false);
  EnterpriseIdentityList unbound(platform, kClient);
  EXPECT_TRUE(unbound.IsEmpty());
  EXPECT_EQ(platform.Impersonations(), 0);

  platform.SetIdentitiesBound(true);
  platform.FailFilledQuery(static_cast<int32_t>(0x80004005));
  EnterpriseIdentityList failed(platform, kClient);
  EXPECT_TRUE(failed.IsEmpty());
  EXPECT_FALSE(failed.HasIdentity());
  EXPECT_EQ(platform.Reverts(), 1);
}

TEST_F(EnterpriseIdentityListTest, AnInvalidArgumentAnswerIsRetriedWith260Bytes) {
  platform.AnswerSizeQueryWithInvalidArgument();
  EnterpriseIdentityList list(platform, kServer);
  EXPECT_EQ(list.Count(), 1u);
  EXPECT_EQ(platform.OfferedBytes(), (std::vector<uint32_t>{0, 260}));

  // Identities that don't fit in 260 bytes aren't read at all.
  platform.SetProcessIdentities({std::u16string(200, u'x')});
  EnterpriseIdentityList tooLong(platform, kServer);
  EXPECT_TRUE(tooLong.IsEmpty());
}

TEST_F(EnterpriseIdentityListTest, AnIdentityMatchesOnlyWithTheSameLengthAndCase) {
  EnterpriseIdentityList list(platform, kClient);
  EXPECT_TRUE(list.Contains(u"Other.example"));
  EXPECT_FALSE(list.Contains(u"other.example"));
  EXPECT_FALSE(list.Contains(u"client.exampl"));

  // A list whose first string is empty has no identity, though it isn't empty.
  platform.SetProcessIdentities({u"", u"corp.example"});
  EnterpriseIdentityList blankFirst(platform, kServer);
  EXPECT_FALSE(blankFirst.IsEmpty());
  EXPECT_FALSE(blankFirst.HasIdentity());
}
