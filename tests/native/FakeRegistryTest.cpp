#include <gtest/gtest.h>

#include "tests/fakes/FakeRegistry.h"

using namespace SASM;

namespace {

constexpr RegistryHive kMachine = RegistryHive::Machine;
constexpr RegistryHive kUser = RegistryHive::CurrentUser;

TEST(FakeRegistry, AnswersWithThePlatformsErrorNumbers) {
  FakeRegistry registry;
  std::u16string text;
  uint32_t number = 0;
  EXPECT_EQ(registry.OpenKey(kMachine, u"Software\\Nope", RegistryAccess::kRead), 2);
  EXPECT_EQ(registry.ReadString(kMachine, u"Software\\Nope", u"v", text), 2);
  ASSERT_EQ(registry.SetDword(kMachine, u"Software\\Yes", u"n", 7), 0);
  EXPECT_EQ(registry.ReadString(kMachine, u"Software\\Yes", u"n", text), 1804);
  EXPECT_EQ(registry.ReadDword(kMachine, u"SOFTWARE\\yes\\", u"N", number), 0);
  EXPECT_EQ(number, 7u);
  EXPECT_EQ(registry.ReadDword(kMachine, u"Software\\Yes", u"other", number), 2);
  EXPECT_EQ(registry.DeleteValue(kMachine, u"Software\\Yes", u"other"), 2);
  EXPECT_EQ(registry.DeleteTree(kMachine, u"Software\\Nope"), 2);
  // The hives are apart.
  EXPECT_EQ(registry.ReadDword(kUser, u"Software\\Yes", u"n", number), 2);
}

TEST(FakeRegistry, StringsReadWideAndNarrowAndTheEmptyNameIsTheDefault) {
  FakeRegistry registry;
  registry.SetString(kUser, u"K", u"", u"default");
  registry.SetNarrowString(kUser, u"K", u"narrow", "caf\xE9");
  std::u16string wide;
  std::string narrow;
  EXPECT_EQ(registry.ReadString(kUser, u"K", u"", wide), 0);
  EXPECT_EQ(wide, u"default");
  EXPECT_EQ(registry.ReadString(kUser, u"K", u"NARROW", wide), 0);
  EXPECT_EQ(wide, u"caf\u00E9");
  EXPECT_EQ(registry.ReadNarrowString(kUser, u"K", u"narrow", narrow), 0);
  EXPECT_EQ(narrow, "caf\xE9");
}

TEST(FakeRegistry, FailedValueAnswersItsErrorIsLoggedAndLeavesTheOthersAlone) {
  FakeRegistry registry;
  registry.FailValue(kMachine, u"Software\\P", u"b", 5);
  for (const char16_t* name : {u"a", u"b", u"c"}) registry.SetDword(kMachine, u"Software\\P", name, 1);
  EXPECT_EQ(registry.WriteLog(),
            (std::vector<std::string>{"SetDword HKLM\\Software\\P [a] 0", "SetDword HKLM\\Software\\P [b] 5",
                                      "SetDword HKLM\\Software\\P [c] 0"}));
  uint32_t value = 0;
  EXPECT_EQ(registry.ReadDword(kMachine, u"Software\\P", u"b", value), 5);
  EXPECT_EQ(registry.ReadDword(kMachine, u"Software\\P", u"c", value), 0);
}

TEST(FakeRegistry, FailedKeyRefusesItsOperationsAndProtectsTheTreeAboveIt) {
  FakeRegistry registry;
  registry.SetString(kMachine, u"Software\\Top\\Locked\\Deep", u"v", u"x");
  registry.FailKey(kMachine, u"Software\\Top\\Locked", 5);
  EXPECT_EQ(registry.OpenKey(kMachine, u"Software\\Top\\Locked", RegistryAccess::kRead), 5);
  EXPECT_EQ(registry.SetString(kMachine, u"Software\\Top\\Locked", u"v", u"y"), 5);
  EXPECT_EQ(registry.DeleteTree(kMachine, u"Software\\Top"), 5);
  EXPECT_TRUE(registry.KeyExists(kMachine, u"Software\\Top\\Locked\\Deep"));
  EXPECT_EQ(registry.WriteLog().back(), "DeleteTree HKLM\\Software\\Top 5");
}

TEST(FakeRegistry, DeleteTreeRemovesSubkeysAndEnumerationListsDirectChildren) {
  FakeRegistry registry;
  registry.CreateKey(kUser, u"Software\\Tree\\Beta\\Inner", RegistryAccess::kAllAccess);
  registry.CreateKey(kUser, u"Software\\Tree\\alpha", RegistryAccess::kAllAccess);
  registry.CreateKey(kUser, u"Software\\TreeSibling", RegistryAccess::kAllAccess);
  std::vector<std::u16string> names;
  EXPECT_EQ(registry.EnumerateSubkeys(kUser, u"Software\\Tree", names), 0);
  EXPECT_EQ(names, (std::vector<std::u16string>{u"alpha", u"Beta"}));

  EXPECT_EQ(registry.DeleteTree(kUser, u"software\\tree"), 0);
  EXPECT_FALSE(registry.KeyExists(kUser, u"Software\\Tree\\Beta\\Inner"));
  EXPECT_FALSE(registry.KeyExists(kUser, u"Software\\Tree"));
  EXPECT_TRUE(registry.KeyExists(kUser, u"Software\\TreeSibling"));
}

TEST(FakeRegistry, ThirtyTwoBitViewOfMachineSoftwareIsWow6432Node) {
  FakeRegistry registry;
  uint32_t access = RegistryAccess::kAllAccess | RegistryAccess::kWow64Key32;
  registry.SetDword(kMachine, u"SOFTWARE\\Vendor", u"v", 3, access);
  EXPECT_TRUE(registry.KeyExists(kMachine, u"SOFTWARE\\Wow6432Node\\Vendor"));
  std::vector<std::u16string> names;
  registry.EnumerateSubkeys(kMachine, u"SOFTWARE", names);
  EXPECT_EQ(names, std::vector<std::u16string>{u"Wow6432Node"});
  EXPECT_EQ(registry.AccessLog().back(), RegistryAccess::kRead);
}

}  // namespace
