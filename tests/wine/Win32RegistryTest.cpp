// The registry seam over the prefix's real registry, in both hives.
#include "engine/win32/Win32Registry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/win32/WindowsApi.h"

using namespace SASM;

namespace {

class Win32RegistryTest : public ::testing::TestWithParam<RegistryHive> {
 protected:
  void SetUp() override {
    root_ = u"Software\\LumenUtilTests\\Registry";
    registry_.DeleteTree(GetParam(), root_);
  }
  void TearDown() override {
    registry_.DeleteTree(GetParam(), root_);
    registry_.DeleteTree(RegistryHive::Machine, u"Software\\Wow6432Node\\LumenUtilTests");
    std::vector<std::u16string> left;
    registry_.EnumerateSubkeys(GetParam(), u"Software\\LumenUtilTests", left);
    if (left.empty()) registry_.DeleteTree(GetParam(), u"Software\\LumenUtilTests");
  }

  Win32Registry registry_;
  std::u16string root_;
};

TEST_P(Win32RegistryTest, ValuesRoundTripWideNarrowAndNumeric) {
  RegistryHive hive = GetParam();
  std::u16string key = root_ + u"\\Values";
  ASSERT_EQ(registry_.SetString(hive, key, u"Wide", u"caf\u00E9 \u4E2D"), 0);
  ASSERT_EQ(registry_.SetNarrowString(hive, key, u"Narrow", "plain text"), 0);
  ASSERT_EQ(registry_.SetDword(hive, key, u"Number", 0xDEADBEEF), 0);
  ASSERT_EQ(registry_.SetString(hive, key, u"", u"default"), 0);

  std::u16string wide;
  std::string narrow;
  uint32_t number = 0;
  EXPECT_EQ(registry_.ReadString(hive, key, u"Wide", wide), 0);
  EXPECT_EQ(wide, u"caf\u00E9 \u4E2D");
  EXPECT_EQ(registry_.ReadString(hive, key, u"Narrow", wide), 0);
  EXPECT_EQ(wide, u"plain text");
  EXPECT_EQ(registry_.ReadNarrowString(hive, key, u"Narrow", narrow), 0);
  EXPECT_EQ(narrow, "plain text");
  EXPECT_EQ(registry_.ReadDword(hive, key, u"number", number), 0);
  EXPECT_EQ(number, 0xDEADBEEFu);
  EXPECT_EQ(registry_.ReadString(hive, key, u"", wide), 0);
  EXPECT_EQ(wide, u"default");
}

TEST_P(Win32RegistryTest, TreeDeleteRemovesEverySubkeyAndErrorsAreThePlatformsNumbers) {
  RegistryHive hive = GetParam();
  ASSERT_EQ(registry_.CreateKey(hive, root_ + u"\\Tree\\Alpha\\Deep", RegistryAccess::kAllAccess), 0);
  ASSERT_EQ(registry_.SetDword(hive, root_ + u"\\Tree\\Beta", u"v", 1), 0);
  std::vector<std::u16string> names;
  EXPECT_EQ(registry_.EnumerateSubkeys(hive, root_ + u"\\Tree", names), 0);
  EXPECT_EQ(names, (std::vector<std::u16string>{u"Alpha", u"Beta"}));

  EXPECT_EQ(registry_.DeleteTree(hive, root_ + u"\\Tree"), 0);
  EXPECT_EQ(registry_.OpenKey(hive, root_ + u"\\Tree\\Alpha\\Deep", RegistryAccess::kRead), 2);
  EXPECT_EQ(registry_.OpenKey(hive, root_ + u"\\Tree", RegistryAccess::kRead), 2);
  EXPECT_EQ(registry_.OpenKey(hive, root_, RegistryAccess::kRead), 0);
  EXPECT_EQ(registry_.DeleteTree(hive, root_ + u"\\Tree"), 2);

  std::u16string key = root_ + u"\\Errors", text;
  uint32_t number = 0;
  EXPECT_EQ(registry_.ReadString(hive, key, u"x", text), 2);
  ASSERT_EQ(registry_.SetDword(hive, key, u"Number", 1), 0);
  EXPECT_EQ(registry_.ReadString(hive, key, u"Number", text), 1804);
  EXPECT_EQ(registry_.ReadDword(hive, key, u"Absent", number), 2);
  EXPECT_EQ(registry_.DeleteValue(hive, key, u"Number"), 0);
  EXPECT_EQ(registry_.DeleteValue(hive, key, u"Number"), 2);
}

INSTANTIATE_TEST_SUITE_P(BothHives, Win32RegistryTest,
                         ::testing::Values(RegistryHive::Machine, RegistryHive::CurrentUser),
                         [](const auto& info) { return info.param == RegistryHive::Machine ? "Machine" : "User"; });

TEST(Win32Registry, ThirtyTwoBitViewOfMachineSoftwareIsWow6432Node) {
  Win32Registry registry;
  uint32_t access = RegistryAccess::kAllAccess | RegistryAccess::kWow64Key32;
  ASSERT_EQ(registry.SetDword(RegistryHive::Machine, u"Software\\LumenUtilTests\\View", u"v", 32, access), 0);
  uint32_t value = 0;
  EXPECT_EQ(registry.ReadDword(RegistryHive::Machine, u"Software\\Wow6432Node\\LumenUtilTests\\View", u"v", value,
                               RegistryAccess::kRead | RegistryAccess::kWow64Key64),
            0);
  EXPECT_EQ(value, 32u);
  EXPECT_EQ(registry.OpenKey(RegistryHive::Machine, u"Software\\LumenUtilTests\\View",
                             RegistryAccess::kRead | RegistryAccess::kWow64Key64),
            2);
  registry.DeleteTree(RegistryHive::Machine, u"Software\\Wow6432Node\\LumenUtilTests");
}

}  // namespace
