#include "broker/BrokerFileProtectionInfo.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/Task.h"
#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"

using SASM::BrokerFileProtectionInfo;
using SASM::FakeEnterpriseProtectionPlatform;
using Answer = SASM::FakeEnterpriseProtectionPlatform::Answer;

namespace {

const std::u16string kFile = u"C:\\Data\\report.txt";

std::u16string IdentityOf(const BrokerFileProtectionInfo& info) {
  uint32_t length = 99;
  const char16_t* identity = info.GetIdentity(length);
  return identity ? std::u16string(identity, length) : u"<none>";
}

class BrokerFileProtectionInfoTest : public ::testing::Test {
 protected:
  BrokerFileProtectionInfoTest() { platform.AddFile(kFile); }
  ~BrokerFileProtectionInfoTest() override { SASM::StopTask(); }

  FakeEnterpriseProtectionPlatform platform;
};

}  // namespace

TEST_F(BrokerFileProtectionInfoTest, AMissingFileIsNotProtectedAndStartsNoWorker) {
  SASM::StopTask();
  BrokerFileProtectionInfo info(platform, u"C:\\Data\\missing.txt");
  EXPECT_FALSE(info.IsProtected());
  EXPECT_EQ(info.Status(), BrokerFileProtectionInfo::kFailed);
  EXPECT_EQ(IdentityOf(info), u"<none>");
  EXPECT_EQ(SASM::CurrentTask(), nullptr);
  EXPECT_TRUE(platform.QueriedPaths().empty());
}

TEST_F(BrokerFileProtectionInfoTest, AProtectedFileGivesItsIdentityAndAFailedQueryLeavesItOpen) {
  platform.SetAnswer(kFile, Answer::kProtected, u"corp.example");
  BrokerFileProtectionInfo info(platform, kFile.c_str());
  EXPECT_TRUE(info.IsProtected());
  EXPECT_EQ(info.Status(), BrokerFileProtectionInfo::kFoundProtected);
  EXPECT_EQ(IdentityOf(info), u"corp.example");
  EXPECT_NE(SASM::CurrentTask(), nullptr);

  platform.SetAnswer(kFile, Answer::kFailed);
  BrokerFileProtectionInfo failed(platform, kFile.c_str());
  EXPECT_FALSE(failed.IsProtected());
  EXPECT_EQ(failed.Status(), BrokerFileProtectionInfo::kFailed);
  EXPECT_EQ(platform.QueriedPaths().size(), 2u);
}

TEST_F(BrokerFileProtectionInfoTest, ProtectionToOtherUsersEnterprisesAndIdentitiesCounts) {
  for (int32_t status : {3, 7}) {
    platform.SetAnswer(kFile, Answer::kProtected, u"corp.example", status);
    EXPECT_TRUE(BrokerFileProtectionInfo(platform, kFile.c_str()).IsProtected()) << status;
  }
  // Unprotected, not protectable, in use.
  for (int32_t status : {1, 6, 10}) {
    platform.SetAnswer(kFile, Answer::kProtected, u"corp.example", status);
    BrokerFileProtectionInfo info(platform, kFile.c_str());
    EXPECT_FALSE(info.IsProtected()) << status;
    EXPECT_EQ(IdentityOf(info), u"<none>") << status;
  }
}

TEST_F(BrokerFileProtectionInfoTest, AnAnswerFromThePlatformsOwnThreadIsWaitedFor) {
  platform.AnswerFromAnotherThread(true);
  platform.SetAnswer(kFile, Answer::kProtected, u"corp.example");
  // Again after the server's end has stopped the worker: it comes back.
  for (int i = 0; i < 20; ++i) {
    if (i == 10) SASM::StopTask();
    BrokerFileProtectionInfo info(platform, kFile.c_str());
    EXPECT_TRUE(info.IsProtected());
  }
}

TEST_F(BrokerFileProtectionInfoTest, ThePlatformIsGivenAtMost260Characters) {
  std::u16string longPath = u"C:\\" + std::u16string(300, u'a');
  platform.AddFile(longPath);
  BrokerFileProtectionInfo info(platform, longPath.c_str());
  ASSERT_EQ(platform.QueriedPaths().size(), 1u);
  EXPECT_EQ(platform.QueriedPaths()[0], longPath.substr(0, 260));
}
