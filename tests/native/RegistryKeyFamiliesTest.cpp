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

TEST(RegistryKeyFamilies, ActiveXClassesAreTheBrokersEarlierGenerationsThenTheControl) {
  std::vector<std::string> names = Names(Family::ActiveXMachineClasses);
  ASSERT_EQ(names.size(), 10u + 3u);
  EXPECT_EQ(names[0], "MACHINE\\Software\\Classes\\CLSID\\{D4304BCF-B8E9-4B35-BEA0-DC5B522670C2}");
  EXPECT_EQ(names[1], "MACHINE\\Software\\Classes\\Interface\\{2E4BB6BE-A75F-4DC0-9500-68203655A2C4}");
  EXPECT_EQ(names[9], "MACHINE\\Software\\Classes\\Interface\\{6AE38AE0-750C-11E1-B0C4-0800200C9A66}");
  std::vector<std::string> control = Names(Family::Control);
  EXPECT_TRUE(std::equal(control.begin(), control.end(), names.begin() + 10));
}

TEST(RegistryKeyFamilies, ClassRootFamilyHoldsTheProgramIdsAndEndsOnTheMachine) {
  std::vector<std::string> names = Names(Family::ClassRoot);
  ASSERT_EQ(names.size(), 14u + 13u + 18u);
  EXPECT_EQ(names[4], "CLASSES_ROOT\\TypeLib\\{57A0E746-3863-4D20-A811-950C84F1DB9B}");
  std::vector<std::string> programIds = Names(Family::ProgramId);
  EXPECT_TRUE(std::equal(programIds.begin(), programIds.end(), names.begin() + 14));
  EXPECT_EQ(names[31], "MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen");
  EXPECT_EQ(names.back(),
            "MACHINE\\Software\\Microsoft\\Internet Explorer\\NavigatorPluginsList\\Tidewater "
            "Lumen\\application/x-tidewater-lumen");
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
  EXPECT_LT(Sign("B", "a"), 0);
  EXPECT_LT(Sign("abc", "\xC3\xA9"), 0);  // bytes above 127 sort last
}

}  // namespace
