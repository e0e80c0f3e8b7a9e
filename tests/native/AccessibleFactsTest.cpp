#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/fakes/FakeWindowSystem.h"
#include "ui/AccessibleFacts.h"
#include "ui/MButton.h"
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

TEST_F(AccessibleFactsTest, RoleAndStateFollowTheKindTheFocusAndTheCheck) {
  std::unique_ptr<MButton> button(MakeButton(&window, nullptr, MString(u"Next")));
  std::unique_ptr<MCheckboxButton> box(MakeCheckbox(&window, nullptr, false));
  MRadioGroup group;
  std::unique_ptr<MRadioButton> radio(MakeRadio(&window, nullptr, true, 1, &group));
  MTextArea area(&window, 16, false, false);
  area.drawFlags |= MRegion::kNativeWindow;
  window.AttachRegion(box.get());
  window.AttachRegion(&area);

  EXPECT_EQ(AccessibleFacts::Role(*button), 43);
  EXPECT_EQ(AccessibleFacts::State(*button), 1048576);
  EXPECT_EQ(AccessibleFacts::Role(*box), 44);
  EXPECT_EQ(AccessibleFacts::State(*box), 1048576);
  box->checked = 1;
  window.SetFocusRegion(box.get(), true);
  EXPECT_EQ(AccessibleFacts::State(*box), 1048596);
  // Checked is read through the check box base.
  EXPECT_EQ(AccessibleFacts::Role(*radio), 45);
  EXPECT_EQ(AccessibleFacts::State(*radio), 1048592);
  // Kind 0 is read-only static text, focused or not.
  window.focusRegion = &area;
  EXPECT_EQ(AccessibleFacts::Role(area), 41);
  EXPECT_EQ(AccessibleFacts::State(area), 64);
  area.controlKind = 7;
  EXPECT_EQ(AccessibleFacts::Role(area), 41);
  box->Detach();
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
  outer.Detach();
}

TEST(AccessibleFactsChildId, OnlyAFourByteIntegerZeroNamesTheRegionItself) {
  EXPECT_TRUE(AccessibleFacts::IsSelf(3, 0));
  EXPECT_FALSE(AccessibleFacts::IsSelf(3, 1));
  EXPECT_FALSE(AccessibleFacts::IsSelf(2, 0));   // a 16-bit zero
  EXPECT_FALSE(AccessibleFacts::IsSelf(19, 0));  // an unsigned one
}

TEST(AccessibleFactsLifetime, ARegionWithAnObjectHandsItToThePlatformAsItGoes) {
  static std::vector<const void*> released;
  const auto saved = MRegion::releaseAccessible;
  MRegion::releaseAccessible = [](MRegion& region) { released.push_back(region.accProxy); };
  int standIn = 0;
  auto* object = reinterpret_cast<MAccProxyObject*>(&standIn);
  {
    MSkinnedSection with, without;
    with.accProxy = object;
  }
  MRegion::releaseAccessible = saved;
  EXPECT_EQ(released, (std::vector<const void*>{object}));
}

}  // namespace
}  // namespace SASM
