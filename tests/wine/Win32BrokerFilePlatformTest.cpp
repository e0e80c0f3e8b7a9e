// The file family over the real platform: files on the prefix's disk,
// SAFEARRAYs, sharing between handles, the zone mark.
#include "broker/win32/Win32BrokerFilePlatform.h"

#include <gtest/gtest.h>

#include <oleauto.h>

#include <string>

#include "broker/BrokerCookieTable.h"
#include "broker/BrokerFileMethods.h"
#include "broker/BrokerPathPolicy.h"
#include "broker/Task.h"
#include "broker/win32/ComInitializer.h"
#include "broker/win32/LumenBrokerZoneIdentifier.h"
#include "broker/win32/Win32EnterpriseProtectionPlatform.h"
#include "broker/win32/Win32InternetMarkPlatform.h"
#include "broker/win32/Win32PathPlatform.h"
#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr int32_t kFail = static_cast<int32_t>(0x80004005);

SAFEARRAY* Bytes(const std::string& bytes) { return WineTest::ByteArray(bytes).release(); }

std::string FileContent(const std::wstring& path) {
  return WineTest::FileExists(path) ? WineTest::ReadAll(path) : "<missing>";
}

// The broker's file family as the server object will hold it, in the
// player's data folder of this prefix.
class Win32BrokerFilePlatformTest : public ::testing::Test {
 protected:
  Win32BrokerFilePlatformTest() {
    playerData_ = WineTest::RoamingFolder() + L"\\Halcyonics\\Lumen Player";
    tree_.Directory(playerData_ + L"\\LumenFileTest");
  }
  ~Win32BrokerFilePlatformTest() override { StopTask(); }

  std::wstring Path(const wchar_t* leaf) { return playerData_ + L"\\LumenFileTest\\" + leaf; }
  std::u16string Name(const wchar_t* leaf) { return FromWide(Path(leaf).c_str()); }
  // Files the family makes are the tree's to remove.
  void Owns(const wchar_t* leaf) { created_.push_back(Path(leaf)); }

  uint32_t Open(const wchar_t* leaf, int32_t readOnly, int32_t* result = nullptr) {
    uint32_t cookie = 0;
    int32_t hr = methods_.CreateFile(Name(leaf).c_str(), readOnly, 0, &cookie);
    if (result) *result = hr;
    return cookie;
  }

  int32_t Write(uint32_t cookie, SAFEARRAY* array) {
    uint32_t written = 0;
    int32_t hr = methods_.WriteFile(cookie, array, &written);
    SafeArrayDestroy(array);
    return hr;
  }

  void TearDown() override {
    for (const std::wstring& path : created_) {
      DeleteFileW((path + L":Zone.Identifier").c_str());
      DeleteFileW(path.c_str());
    }
  }

  WineTest::TempTree tree_;
  std::wstring playerData_;
  std::vector<std::wstring> created_;
  Win32PathPlatform pathPlatform_;
  BrokerPathPolicy policy_{pathPlatform_, true};
  Win32BrokerFilePlatform files_;
  Win32EnterpriseProtectionPlatform protection_;
  Win32InternetMarkPlatform marks_;
  BrokerCookieTable cookies_;
  EnterpriseIdentityList serverIdentities_{protection_, EnterpriseIdentityList::kServerProcess};
  BrokerFileMethods methods_{files_, protection_, marks_, policy_, cookies_, serverIdentities_};
};

}  // namespace

TEST_F(Win32BrokerFilePlatformTest, OrdinaryDataIsWrittenAndMarkedAsFromTheInternet) {
  Owns(L"cache.dll");
  uint32_t writer = Open(L"cache.dll", 0);
  ASSERT_NE(writer, 0u);
  EXPECT_EQ(Write(writer, Bytes("hello")), 0);
  EXPECT_EQ(methods_.CloseHandle(writer), 0);
  EXPECT_EQ(FileContent(Path(L"cache.dll")), "hello");
  {
    ComInitializer com;
    uint32_t zone = 0;
    EXPECT_TRUE(LumenBrokerZoneIdentifier::ReadMark(Path(L"cache.dll").c_str(), zone));
    EXPECT_EQ(zone, 3u);
  }
}

TEST_F(Win32BrokerFilePlatformTest, AReaderGetsInBesideAWriterThatSharesOnlyReading) {
  tree_.File(Path(L"busy.sol"), "busy");
  HANDLE writer = CreateFileW(Path(L"busy.sol").c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                              nullptr);
  ASSERT_NE(writer, INVALID_HANDLE_VALUE);
  int32_t hr = 0;
  uint32_t reader = Open(L"busy.sol", 1, &hr);
  EXPECT_EQ(hr, 0);
  EXPECT_EQ(Open(L"busy.sol", 0, &hr), 0u);
  EXPECT_EQ(hr, static_cast<int32_t>(0x80070020));
  methods_.CloseHandle(reader);
  CloseHandle(writer);
}

TEST_F(Win32BrokerFilePlatformTest, OnlyOneDimensionalByteArraysAreWritten) {
  Owns(L"shape.sol");
  uint32_t cookie = Open(L"shape.sol", 0);
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  EXPECT_EQ(Write(cookie, SafeArrayCreate(VT_UI1, 2, bounds)), kFail);
  SAFEARRAYBOUND shifted = {2, 1};
  EXPECT_EQ(Write(cookie, SafeArrayCreate(VT_UI1, 1, &shifted)), kFail);
  EXPECT_EQ(Write(cookie, SafeArrayCreateVector(VT_I2, 0, 2)), kFail);
  EXPECT_EQ(methods_.CloseHandle(cookie), 0);
  EXPECT_EQ(FileContent(Path(L"shape.sol")), "");
}
