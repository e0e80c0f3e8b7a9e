#include "removal/RegistryKeyFamilies.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fakes/FakeRegistry.h"

using namespace SASM;
using Family = RegistryKeyFamilies::Family;
using Selection = RegistryKeyFamilies::Selection;

namespace {

void Collect(void* names, const char* name) { static_cast<std::vector<std::string>*>(names)->push_back(name); }

template <typename Which>
std::vector<std::string> Names(Which which) {
  std::vector<std::string> names;
  RegistryKeyFamilies::Walk(which, &Collect, &names);
  return names;
}

TEST(RegistryKeyFamilies, ActiveXClassesAreFivePairsThenTheControlFamily) {
  std::vector<std::string> names = Names(Family::ActiveXMachineClasses);
  ASSERT_EQ(names.size(), 13u);
  for (size_t i = 0; i < 10; i += 2) {
    EXPECT_EQ(names[i].rfind("MACHINE\\Software\\Classes\\CLSID\\{", 0), 0u) << names[i];
    EXPECT_EQ(names[i + 1].rfind("MACHINE\\Software\\Classes\\Interface\\{", 0), 0u) << names[i + 1];
  }
  std::vector<std::string> control = Names(Family::Control);
  EXPECT_TRUE(std::equal(control.begin(), control.end(), names.begin() + 10));
  EXPECT_EQ(Names(Selection::ActiveXClasses), names);
}

TEST(RegistryKeyFamilies, ProgramIdsSkipTheSecondAndEndWithTheMimeKeys) {
  std::vector<std::string> names = Names(Family::ProgramId);
  ASSERT_EQ(names.size(), 13u);
  EXPECT_EQ(names[1], "CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.1");
  EXPECT_EQ(names[2], "CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.3");
  EXPECT_EQ(names[10], "CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.11");
  EXPECT_EQ(names[12], "CLASSES_ROOT\\MIME\\Database\\Content Type\\application/x-tidewater-lumen");
}

TEST(RegistryKeyFamilies, ClassRootFamilyHoldsTheProgramIdsAndEndsOnTheMachine) {
  std::vector<std::string> names = Names(Family::ClassRoot);
  ASSERT_EQ(names.size(), 14u + 13u + 18u);
  EXPECT_EQ(names[4], "CLASSES_ROOT\\TypeLib\\{57A0E746-3863-4D20-A811-950C84F1DB9B}");
  std::vector<std::string> programIds = Names(Family::ProgramId);
  EXPECT_TRUE(std::equal(programIds.begin(), programIds.end(), names.begin() + 14));
  EXPECT_EQ(names[27], "CLASSES_ROOT\\HalcyonicsLumenPaper.HalcyonicsLumenPaper");
  EXPECT_EQ(names[31], "MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen");
  EXPECT_EQ(names[41], "MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.11");
  EXPECT_EQ(names.back(),
            "MACHINE\\Software\\Microsoft\\Internet Explorer\\NavigatorPluginsList\\Tidewater "
            "Lumen\\application/x-tidewater-lumen");
}

TEST(RegistryKeyFamilies, OldClassKeysAreTheSecondControlThenTheClassRoot) {
  std::vector<std::string> expected = Names(Family::SecondControl);
  ASSERT_EQ(expected.size(), 3u);
  std::vector<std::string> root = Names(Family::ClassRoot);
  expected.insert(expected.end(), root.begin(), root.end());
  EXPECT_EQ(Names(Selection::OldClassKeys), expected);
}

TEST(RegistryKeyFamilies, DeleteVisitorActsOnMachineNamesOnly) {
  FakeRegistry registry;
  registry.CreateKey(RegistryHive::Machine, u"Software\\Classes\\TidewaterLumen.TidewaterLumen\\CLSID", 0);
  registry.CreateKey(RegistryHive::Machine, u"CLASSES_ROOT\\.fgl", 0);
  EXPECT_EQ(RegistryKeyFamilies::DeleteMachineKey(registry, "MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen"),
            0);
  EXPECT_EQ(RegistryKeyFamilies::DeleteMachineKey(registry, "CLASSES_ROOT\\.fgl"), 0);
  EXPECT_EQ(RegistryKeyFamilies::DeleteMachineKey(registry, "MACHINE\\Software\\Classes\\Absent"), 2);
  EXPECT_EQ(registry.WriteLog(),
            (std::vector<std::string>{
                "CreateKey HKLM\\Software\\Classes\\TidewaterLumen.TidewaterLumen\\CLSID 0",
                "CreateKey HKLM\\CLASSES_ROOT\\.fgl 0",
                "DeleteTree HKLM\\Software\\Classes\\TidewaterLumen.TidewaterLumen 0",
                "DeleteTree HKLM\\Software\\Classes\\Absent 2",
            }));
}

TEST(RegistryKeyFamilies, DeletingTheOldClassKeysTouchesEveryMachineNameInOrder) {
  FakeRegistry registry;
  RegistryKeyFamilies::Walk(Selection::OldClassKeys, &RegistryKeyFamilies::DeleteVisitor, &registry);
  std::vector<std::string> expected;
  for (const std::string& name : Names(Selection::OldClassKeys)) {
    if (name.rfind("MACHINE\\", 0) == 0) expected.push_back("DeleteTree HKLM\\" + name.substr(8) + " 2");
  }
  EXPECT_EQ(expected.size(), 3u + 11u + 1u + 2u);
  EXPECT_EQ(registry.WriteLog(), expected);
}

}  // namespace

namespace {

int Sign(const char* a, const char* b) { return RegistryKeyFamilies::CompareNames(a, b); }

TEST(RegistryKeyFamiliesCompareNames, NumbersCompareByValueAndSortAfterWordsAndTheEmptyName) {
  EXPECT_GT(Sign("10", "9"), 0);
  EXPECT_LT(Sign("9", "10"), 0);
  EXPECT_GT(Sign("9", "abc"), 0);
  EXPECT_LT(Sign("abc", "9"), 0);
  EXPECT_EQ(Sign("007", "7"), 0);
  // Digits of any length are still compared by value.
  EXPECT_LT(Sign("99999999999999999999998", "99999999999999999999999"), 0);
  // The empty name counts as a number, and words compare byte for byte.
  EXPECT_GT(Sign("", "abc"), 0);
  EXPECT_LT(Sign("", "0001"), 0);
  EXPECT_LT(Sign("B", "a"), 0);
  EXPECT_LT(Sign("a1", "a2"), 0);
  EXPECT_LT(Sign("abc", "\xC3\xA9"), 0);  // bytes above 127 sort last
  EXPECT_EQ(Sign("TypeLib", "TypeLib"), 0);
}

}  // namespace
