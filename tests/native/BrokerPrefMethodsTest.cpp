#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/BrokerPrefMethods.h"
#include "tests/fakes/FakePrefPlatform.h"
#include "tests/fakes/FakeRegistry.h"

using namespace SASM;

namespace {

constexpr RegistryHive kUser = RegistryHive::CurrentUser;
constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
constexpr int32_t kInvalid = static_cast<int32_t>(0x80070057);
constexpr const char16_t* kKey = BrokerPrefMethods::kPlayerKey;
using Accesses = std::vector<uint32_t>;
using Log = std::vector<std::string>;

class BrokerPrefMethodsTest : public ::testing::Test {
 protected:
  BrokerPrefMethodsTest() {
    registry_.CreateKey(kUser, kKey, RegistryAccess::kAllAccess);
    registry_.CreateKey(kUser, UpdateMarking::kRunOnceKey, RegistryAccess::kAllAccess);
  }
  void StoreVersion(std::string_view text) {
    registry_.SetNarrowString(kUser, kKey, BrokerPrefMethods::kVersionName, text);
  }
  bool VersionStored() {
    std::string text;
    return registry_.ReadNarrowString(kUser, kKey, BrokerPrefMethods::kVersionName, text) == 0;
  }

  FakeRegistry registry_;
  FakePrefPlatform platform_;
  UpdateMarking marking_{registry_, [] { return std::string("C:\\Lumen\\LumenBroker.exe"); }};
  BrokerPrefMethods methods_{registry_, platform_, marking_};
};

TEST_F(BrokerPrefMethodsTest, DeletingBlanksTheVersionFirstThenRemovesItAndAnswersForTheRemoval) {
  StoreVersion("28.0.0.130");
  FakeRegistry& registry = registry_;
  const size_t writes = registry.Writes().size(), masks = registry.Accesses().size();
  EXPECT_EQ(methods_.DeleteLumenPlayerVersion(), 0);
  Log log = registry.WriteLog();
  EXPECT_EQ(Log(log.begin() + writes, log.end()),
            (Log{"BlankValue HKCU\\Software\\Halcyonics\\LumenPlayer [LumenPlayerVersion] 0",
                 "DeleteValue HKCU\\Software\\Halcyonics\\LumenPlayer [LumenPlayerVersion] 0"}));
  EXPECT_EQ(Accesses(registry.Accesses().begin() + masks, registry.Accesses().end()), (Accesses{131103, 131103}));
  EXPECT_FALSE(VersionStored());

  // With nothing stored the blank makes a value that the removal then takes away.
  EXPECT_EQ(methods_.DeleteLumenPlayerVersion(), 0);
  // Without the key nothing is made at all, nor by the dialog size's writes.
  FakeRegistry bare;
  UpdateMarking marking(bare);
  BrokerPrefMethods keyless(bare, platform_, marking);
  EXPECT_EQ(keyless.DeleteLumenPlayerVersion(), kFail);
  EXPECT_EQ(keyless.SetExceptionDialogSize(1, 2), kFail);
  EXPECT_FALSE(bare.KeyExists(kUser, kKey));
}

TEST_F(BrokerPrefMethodsTest, TheVersionIsReadWithReadRightsAndGetAndDeleteIsJudgedByTheReadAlone) {
  StoreVersion("28.1");
  std::u16string text;
  const size_t masks = registry_.Accesses().size();
  EXPECT_EQ(methods_.GetLumenPlayerVersion(&text), 0);
  EXPECT_EQ(Accesses(registry_.Accesses().begin() + masks, registry_.Accesses().end()), Accesses{131097});
  EXPECT_TRUE(VersionStored());
  EXPECT_EQ(methods_.GetAndDeleteLumenPlayerVersion(&text), 0);
  EXPECT_EQ(text, u"28.1");
  EXPECT_FALSE(VersionStored());

  const size_t writes = registry_.Writes().size();
  EXPECT_EQ(methods_.GetAndDeleteLumenPlayerVersion(&text), kFail);
  EXPECT_EQ(text, u"");
  EXPECT_EQ(registry_.Writes().size(), writes + 2);
  EXPECT_EQ(methods_.GetAndDeleteLumenPlayerVersion(nullptr), kInvalid);
}

TEST_F(BrokerPrefMethodsTest, TheDialogSizeIsReadAndWrittenWidthFirst) {
  uint32_t width = 7, height = 7;
  EXPECT_EQ(methods_.GetExceptionDialogSize(&width, nullptr), kInvalid);
  EXPECT_EQ(methods_.GetExceptionDialogSize(nullptr, &height), kInvalid);
  EXPECT_EQ(methods_.GetExceptionDialogSize(&width, &height), kFail);

  registry_.SetDword(kUser, kKey, BrokerPrefMethods::kWidthName, 640);
  EXPECT_EQ(methods_.GetExceptionDialogSize(&width, &height), kFail);
  EXPECT_EQ((std::pair<uint32_t, uint32_t>{width, height}), (std::pair<uint32_t, uint32_t>{640, 7}));

  const size_t masks = registry_.Accesses().size();
  EXPECT_EQ(methods_.SetExceptionDialogSize(800, 600), 0);
  EXPECT_EQ(Accesses(registry_.Accesses().begin() + masks, registry_.Accesses().end()),
            (Accesses{131078, 131078, 131078}));
  EXPECT_EQ(methods_.GetExceptionDialogSize(&width, &height), 0);
  EXPECT_EQ((std::pair<uint32_t, uint32_t>{width, height}), (std::pair<uint32_t, uint32_t>{800, 600}));

  // A width that can't be written keeps the height as it was.
  registry_.FailValue(kUser, kKey, BrokerPrefMethods::kWidthName, 5);
  EXPECT_EQ(methods_.SetExceptionDialogSize(1, 2), kFail);
  uint32_t stored = 0;
  registry_.ReadDword(kUser, kKey, BrokerPrefMethods::kHeightName, stored);
  EXPECT_EQ(stored, 600u);
}

TEST_F(BrokerPrefMethodsTest, TheScreensaverIsDelayedBySettingItsTimeoutToZeroAndBack) {
  EXPECT_EQ(methods_.DelayScreensaver(), kFail);
  EXPECT_TRUE(platform_.timeoutWrites.empty());
  platform_.screenSaveTimeout = 600;
  EXPECT_EQ(methods_.DelayScreensaver(), 0);
  EXPECT_EQ(platform_.timeoutWrites, (std::vector<uint32_t>{0, 600}));
}

TEST_F(BrokerPrefMethodsTest, ADriveIsAskedForByItsRebuiltRootAlone) {
  platform_.volumes = {u"c:\\"};
  EXPECT_EQ(methods_.IsDriveAvailable(u"c:\\some\\path"), 0);
  EXPECT_EQ(methods_.IsDriveAvailable(u"q:"), 1);
  EXPECT_EQ(platform_.volumeQueries, (std::vector<std::u16string>{u"c:\\", u"q:\\"}));
  for (const char16_t* bad : {u"c", u"", u"cc:\\", u":\\"}) EXPECT_EQ(methods_.IsDriveAvailable(bad), kInvalid);
  EXPECT_EQ(methods_.IsDriveAvailable(nullptr), kInvalid);

  platform_.volumeFunctionMissing = true;
  EXPECT_EQ(methods_.IsDriveAvailable(u"c:"), 1);
}

}  // namespace
