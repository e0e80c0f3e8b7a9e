#pragma once
// A user profile with the player's folders, the same on the path policy's view of the disk and on the
// file family's, and the broker's file family over them; the broker object has no identities until a
// test makes them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/AuditedFileOpener.h"
#include "broker/DeferredFileOpener.h"
#include "broker/Task.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"
#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"
#include "tests/fakes/FakeInternetMarkPlatform.h"
#include "tests/fakes/FakePathPlatform.h"
#include "tests/fakes/FakeProcesses.h"

namespace SASM {

constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
constexpr int32_t kDenied = static_cast<int32_t>(0x80070005);
constexpr int32_t kInvalid = static_cast<int32_t>(0x80070057);
constexpr int32_t kNotFound = static_cast<int32_t>(0x80070002);

const std::u16string kRoaming = u"C:\\Users\\a\\AppData\\Roaming";
const std::u16string kLocal = u"C:\\Users\\a\\AppData\\Local";
const std::u16string kPlayerData = kRoaming + u"\\Halcyonics\\Lumen Player";
const std::u16string kVendor = kRoaming + u"\\Corva\\Lumen Player";
const std::u16string kSettings = kPlayerData + u"\\www.halcyonics.example";
const std::u16string kShared = kPlayerData + u"\\#SharedObjects\\abc";
const std::u16string kTemp = kLocal + u"\\Temp";
// The forms the policy compares against.
const std::u16string kPlayerDataUpper = u"C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYONICS\\LUMEN PLAYER";
const std::u16string kVendorUpper = u"C:\\USERS\\A\\APPDATA\\ROAMING\\CORVA\\LUMEN PLAYER";

// The profile's folders for the path policy.
inline void AddProfile(FakePathPlatform& paths) {
  paths.SetFolder(26, kRoaming + u"\\");
  paths.SetFolder(28, kLocal);
  paths.SetFolder(37, u"C:\\Windows\\system32");
  paths.SetFolder(38, u"C:\\Program Files");
  paths.SetFolder(41, u"C:\\Windows\\SysWOW64");
  paths.SetTempPath(kTemp + u"\\");
  for (const std::u16string& directory : {kShared, kSettings, kVendor, kLocal + u"\\Halcyonics\\Lumen Player",
                                          kTemp + u"\\Low", std::u16string(u"C:\\Windows\\System32")})
    paths.AddDirectory(directory);
}

class BrokerWorld : public ::testing::Test {
 protected:
  BrokerWorld() {
    AddProfile(paths);
    for (const std::u16string& directory :
         {kShared, kSettings, kTemp + u"\\Low", std::u16string(u"C:\\Windows\\System32")})
      files.AddDirectory(directory);
    cookies.SetDeferredOpen(&DeferredFileOpener::OpenRecord, &opener);
  }
  ~BrokerWorld() override { StopTask(); }

  // The broker object's identities, read as it is made.
  void MakeServerIdentities(std::vector<std::u16string> identities) {
    protection.SetProcessIdentities(std::move(identities));
    serverIdentities = EnterpriseIdentityList(protection, EnterpriseIdentityList::kServerProcess);
  }

  FakePathPlatform paths;
  FakeBrokerFilePlatform files;
  FakeEnterpriseProtectionPlatform protection;
  FakeInternetMarkPlatform marks;
  FakeProcesses processes;
  BrokerPathPolicy policy{paths, true};
  BrokerCookieTable cookies;
  EnterpriseIdentityList serverIdentities;
  DeferredFileOpener opener{files, protection, marks};
  BrokerFileMethods methods{files, protection, marks, policy, cookies, serverIdentities};
  DialogOwnerPolicy owners{paths, processes};
  AuditedFileOpener audited{methods, files, protection, policy, cookies, owners, serverIdentities};
};

}  // namespace SASM
