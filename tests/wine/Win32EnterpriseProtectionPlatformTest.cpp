// Without the enterprise services (Wine, older systems) nobody has an
// identity and every protection query fails open.
#include "broker/win32/Win32EnterpriseProtectionPlatform.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/BrokerFileProtectionInfo.h"
#include "broker/EnterpriseIdentityList.h"
#include "broker/Task.h"
#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

TEST(Win32EnterpriseProtectionPlatform, WithoutTheServicesNothingIsProtectedAndOnlyAnExistingFileIsAsked) {
  Win32EnterpriseProtectionPlatform platform;
  if (platform.CanGetEnterpriseIds() || platform.CanProtectToIdentity())
    GTEST_SKIP() << "this system has the enterprise services";
  EXPECT_TRUE(EnterpriseIdentityList(platform, EnterpriseIdentityList::kServerProcess).IsEmpty());
  EXPECT_TRUE(EnterpriseIdentityList(platform, EnterpriseIdentityList::kCallingClient).IsEmpty());
  EXPECT_LT(platform.ProtectToIdentity(u"C:\\x.txt", u"corp.example"), 0);

  StopTask();
  const std::wstring directory = WineTest::TestDirectory(L"Protection\\");
  BrokerFileProtectionInfo missing(platform, FromWide((directory + L"missing.txt").c_str()).c_str());
  EXPECT_FALSE(missing.IsProtected());
  EXPECT_EQ(missing.Status(), BrokerFileProtectionInfo::kFailed);
  EXPECT_EQ(CurrentTask(), nullptr) << "a missing file needs no worker";

  WineTest::TempTree tree;
  tree.File(directory + L"present.txt", "x");
  BrokerFileProtectionInfo present(platform, FromWide((directory + L"present.txt").c_str()).c_str());
  EXPECT_FALSE(present.IsProtected());
  EXPECT_EQ(present.Status(), BrokerFileProtectionInfo::kFailed);
  uint32_t length = 7;
  EXPECT_EQ(present.GetIdentity(length), nullptr);
  EXPECT_EQ(length, 0u);
  EXPECT_NE(CurrentTask(), nullptr);
  StopTask();
}
