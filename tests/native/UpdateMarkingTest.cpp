#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "delivery/UpdateMarking.h"
#include "engine/MStringList.h"
#include "tests/fakes/FakeRegistry.h"

using namespace SASM;

namespace {

constexpr RegistryHive kUser = RegistryHive::CurrentUser;
constexpr char kDescription[] =
    "<lumen><update version=\"28.0.0.130\"/><meta>Lumen \"28\" &quot;now&quot;&nbsp;ready</meta></lumen>";
constexpr char kPlayer[] = "C:\\Windows\\System32\\Halcyonics\\LumenPlayer\\LumenUtil_28.exe";

class UpdateMarkingTest : public ::testing::Test {
 protected:
  UpdateMarkingTest() { registry_.CreateKey(kUser, UpdateMarking::kRunOnceKey, RegistryAccess::kAllAccess); }

  std::string Value(const char16_t* key, const char16_t* name) {
    std::u16string text;
    if (registry_.ReadString(kUser, key, name, text)) return "<absent>";
    return MString(std::u16string_view(text)).ToUtf8();
  }
  std::string Command() { return Value(UpdateMarking::kRunOnceKey, UpdateMarking::kRunOnceName); }
  std::string Stored() { return Value(UpdateMarking::kUpdateKey, UpdateMarking::kDescriptionName); }

  FakeRegistry registry_;
  std::string running_ = "C:\\Users\\a\\AppData\\Local\\Lumen\\LumenBroker.exe";
  UpdateMarking marking_{registry_, [this] { return running_; }};
};

TEST_F(UpdateMarkingTest, StoresTheDescriptionAndAnUpdateCommandForTheNextLogon) {
  const size_t masks = registry_.Accesses().size();
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun(kDescription, kPlayer));
  const std::vector<uint32_t> used(registry_.Accesses().begin() + masks, registry_.Accesses().end());
  EXPECT_EQ(used, std::vector<uint32_t>(5, UpdateMarking::kAccess));
  EXPECT_EQ(Stored(), kDescription);
  EXPECT_EQ(Command(), std::string(kPlayer) + " -update activex");

  // Without a path the running process is started, its name cut to leave room for the switches.
  running_ = "C:\\" + std::string(300, 'p');
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun("<lumen/>"));
  EXPECT_EQ(Stored(), "<lumen/>");
  EXPECT_EQ(Command(), running_.substr(0, 243) + " -update activex");
}

TEST_F(UpdateMarkingTest, ARejectedVersionAnywhereInTheDescriptionKeepsEverythingQuiet) {
  registry_.SetString(kUser, UpdateMarking::kUpdateKey, UpdateMarking::kRejectedName, u"0.0.130");
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun(kDescription, kPlayer));
  EXPECT_EQ(Stored(), "<absent>");
  EXPECT_EQ(Command(), "<absent>");
  // An empty rejected text occurs in every description.
  registry_.SetString(kUser, UpdateMarking::kUpdateKey, UpdateMarking::kRejectedName, u"");
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun("<lumen/>", kPlayer));
  EXPECT_EQ(Stored(), "<absent>");
}

TEST_F(UpdateMarkingTest, EveryFailureButANullDescriptionStillAnswersTrue) {
  const size_t writes = registry_.Writes().size();
  EXPECT_FALSE(marking_.MarkAutoUpdaterForRun(nullptr, kPlayer));
  EXPECT_EQ(registry_.Writes().size(), writes);

  // An empty path writes no command.
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun(kDescription, ""));
  EXPECT_EQ(Stored(), kDescription);
  EXPECT_EQ(Command(), "<absent>");

  // A description that can't be written stops before the command.
  registry_.FailValue(kUser, UpdateMarking::kUpdateKey, UpdateMarking::kDescriptionName, 5);
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun("<lumen/>", kPlayer));
  EXPECT_EQ(Command(), "<absent>");
}

TEST_F(UpdateMarkingTest, TheDescriptionIsReadAsItsDecodedMetaBlock) {
  MStringList list;
  EXPECT_FALSE(marking_.ReadUpdateDescription(list));
  marking_.MarkAutoUpdaterForRun("<lumen><update version=\"2\"/></lumen>", kPlayer);
  EXPECT_FALSE(marking_.ReadUpdateDescription(list));
  EXPECT_EQ(list.Count(), 0);

  marking_.MarkAutoUpdaterForRun(kDescription, kPlayer);
  ASSERT_TRUE(marking_.ReadUpdateDescription(list));
  ASSERT_EQ(list.Count(), 1);
  EXPECT_EQ(list.head->value.ToUtf8(), "Lumen '28' \"now\" ready");
}

TEST_F(UpdateMarkingTest, RejectingStoresTheDescriptionsVersionAndQuietsItsNextOffer) {
  EXPECT_FALSE(marking_.MarkUpdateRejected());
  marking_.MarkAutoUpdaterForRun("<lumen><meta>no version</meta></lumen>", kPlayer);
  EXPECT_FALSE(marking_.MarkUpdateRejected());
  EXPECT_EQ(Value(UpdateMarking::kUpdateKey, UpdateMarking::kRejectedName), "<absent>");

  marking_.MarkAutoUpdaterForRun(kDescription, kPlayer);
  registry_.DeleteValue(kUser, UpdateMarking::kRunOnceKey, UpdateMarking::kRunOnceName);
  EXPECT_TRUE(marking_.MarkUpdateRejected());
  EXPECT_EQ(Value(UpdateMarking::kUpdateKey, UpdateMarking::kRejectedName), "28.0.0.130");
  EXPECT_TRUE(marking_.MarkAutoUpdaterForRun(kDescription, kPlayer));
  EXPECT_EQ(Command(), "<absent>");
}

}  // namespace
