#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/fakes/FakeWindowSystem.h"
#include "ui/AccessibleFacts.h"
#include "ui/MButton.h"
#include "ui/MCheckboxButton.h"
#include "ui/MPlainWindow.h"
#include "ui/MRadioButton.h"
#include "ui/MRadioGroup.h"
#include "ui/MSkinnedSection.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"

namespace SASM {
namespace {

class AccessibleFactsTest : public ::testing::Test {
 protected:
  AccessibleFactsTest() : ui(nullptr, nullptr, std::make_unique<FakeWindowSystem>()), window(&ui) {}

  MorphUI ui;
  MPlainWindow window;
};

TEST_F(AccessibleFactsTest, RoleFollowsTheControlKindAndAnythingElseIsStaticText) {
  std::unique_ptr<MButton> button(MakeButton(&window, nullptr, MString(u"Next")));
  std::unique_ptr<MCheckboxButton> box(MakeCheckbox(&window, nullptr, false));
  MRadioGroup group;
  std::unique_ptr<MRadioButton> radio(MakeRadio(&window, nullptr, false, 1, &group));
  MSkinnedSection plain;
  EXPECT_EQ(AccessibleFacts::Role(*button), 43);
  EXPECT_EQ(AccessibleFacts::Role(*box), 44);
  EXPECT_EQ(AccessibleFacts::Role(*radio), 45);
  EXPECT_EQ(AccessibleFacts::Role(plain), 41);
  plain.controlKind = 7;
  EXPECT_EQ(AccessibleFacts::Role(plain), 41);
}

TEST_F(AccessibleFactsTest, CheckBoxStateAddsFocusAndCheckToFocusable) {
  std::unique_ptr<MCheckboxButton> box(MakeCheckbox(&window, nullptr, false));
  box->bounds = MRect::FromSize(10, 10, 15, 15);
  window.AttachRegion(box.get());
  EXPECT_EQ(AccessibleFacts::State(*box), 1048576);
  box->checked = 1;
  EXPECT_EQ(AccessibleFacts::State(*box), 1048576 + 16);
  window.SetFocusRegion(box.get(), true);
  EXPECT_EQ(AccessibleFacts::State(*box), 1048596);
  box->checked = 0;
  EXPECT_EQ(AccessibleFacts::State(*box), 1048576 + 4);
  box->Detach();
}

TEST_F(AccessibleFactsTest, RadioReportsCheckedThroughItsBaseAndAPushButtonNeverDoes) {
  MRadioGroup group;
  std::unique_ptr<MRadioButton> on(MakeRadio(&window, nullptr, true, 1, &group));
  std::unique_ptr<MRadioButton> off(MakeRadio(&window, nullptr, false, 2, &group));
  EXPECT_EQ(AccessibleFacts::State(*on), 1048576 + 16);
  EXPECT_EQ(AccessibleFacts::State(*off), 1048576);
  // A button is focusable but has no checked flag to read.
  std::unique_ptr<MButton> button(MakeButton(&window, nullptr, MString(u"Next")));
  window.AttachRegion(button.get());
  window.SetFocusRegion(button.get(), false);
  EXPECT_EQ(AccessibleFacts::State(*button), 1048576 + 4);
  button->Detach();
}

TEST_F(AccessibleFactsTest, ATextAreaWithANativeWindowIsReadOnlyStaticTextEvenWithFocus) {
  MTextArea area(&window, 16, false, false);
  area.drawFlags |= MRegion::kNativeWindow;
  area.bounds = MRect::FromSize(0, 0, 50, 20);
  window.AttachRegion(&area);
  ASSERT_NE(area.nativeWindow, nullptr);
  window.focusRegion = &area;
  EXPECT_EQ(AccessibleFacts::Role(area), 41);
  EXPECT_EQ(AccessibleFacts::State(area), 64);
  area.Detach();
}

TEST_F(AccessibleFactsTest, LocationAddsEveryAncestorsTopLeft) {
  MSkinnedSection outer, middle, inner;
  outer.bounds = MRect::FromSize(100, 50, 300, 200);
  middle.bounds = MRect::FromSize(20, 30, 100, 100);
  inner.bounds = MRect::FromSize(5, 7, 40, 12);
  window.AttachRegion(&outer);
  outer.AttachChild(&middle);
  middle.AttachChild(&inner);
  EXPECT_EQ(AccessibleFacts::ClientLocation(inner), MRect::FromSize(125, 87, 40, 12));
  EXPECT_EQ(AccessibleFacts::ClientLocation(outer), MRect::FromSize(100, 50, 300, 200));
  middle.Detach();
  EXPECT_EQ(AccessibleFacts::ClientLocation(inner), MRect::FromSize(25, 37, 40, 12));
  outer.Detach();
}

TEST(AccessibleFactsChildId, OnlyAFourByteIntegerZeroNamesTheRegionItself) {
  constexpr uint16_t kEmpty = 0, kI2 = 2, kI4 = 3, kUI4 = 19;
  EXPECT_TRUE(AccessibleFacts::IsSelf(kI4, 0));
  EXPECT_FALSE(AccessibleFacts::IsSelf(kI4, 1));
  EXPECT_FALSE(AccessibleFacts::IsSelf(kI4, -1));
  EXPECT_FALSE(AccessibleFacts::IsSelf(kEmpty, 0));
  EXPECT_FALSE(AccessibleFacts::IsSelf(kI2, 0));
  EXPECT_FALSE(AccessibleFacts::IsSelf(kUI4, 0));
}

TEST(AccessibleFactsLifetime, ARegionWithAnObjectHandsItToThePlatformAsItGoes) {
  static std::vector<const void*> released;
  released.clear();
  const auto saved = MRegion::releaseAccessible;
  MRegion::releaseAccessible = [](MRegion& region) { released.push_back(region.accProxy); };
  int stand_in = 0;
  auto* object = reinterpret_cast<MAccProxyObject*>(&stand_in);
  {
    MSkinnedSection with, without;
    with.accProxy = object;
  }
  MRegion::releaseAccessible = saved;
  EXPECT_EQ(released, (std::vector<const void*>{object}));
}

}  // namespace
}  // namespace SASM
