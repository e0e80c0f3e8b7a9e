#include "ui/MButton.h"

#include <gtest/gtest.h>

#include "tests/native/WidgetTestWindow.h"
#include "ui/MCheckboxButton.h"
#include "ui/MProgressBar.h"
#include "ui/MRadioButton.h"
#include "ui/MRadioGroup.h"
#include "ui/MTextArea.h"

namespace SASM {
namespace {

using Notes = std::vector<std::pair<int32_t, int32_t>>;

class MButtonTest : public WidgetTestWindow {
 protected:
  // A button of 100 by 30 at (10, 10) with control id 7.
  std::unique_ptr<MButton> Button() {
    std::unique_ptr<MButton> b(MakeButton(window, skin, MString(u"NEXT")));
    b->controlId = 7;
    b->bounds = MRect::FromSize(10, 10, 100, 30);
    window->AttachRegion(b.get());
    b->Layout();
    return b;
  }
  Notes Take() {
    Notes notes = Posted();
    System().posted.clear();
    return notes;
  }
  int32_t LookX(const MButton& b) const { return b.left->sourceRect.x; }

  int skinPixels = 0;
  void* skin = &skinPixels;
};

TEST_F(MButtonTest, MakeButtonDrawsItsLabelAfterTheSlices) {
  auto b = Button();
  EXPECT_NE(b->nativeWindow, nullptr);
  EXPECT_EQ(b->right->Next(), b->labelText);
  EXPECT_EQ(b->labelText->label.ToUtf8(), "NEXT");  // rendered by the button's layout
  EXPECT_EQ(b->labelText->nativeWindow, nullptr);
}

TEST_F(MButtonTest, PointerPressAndReleaseInsideEnterPressAndClick) {
  auto b = Button();
  Mouse(MWindow::kMouseMove, 20, 20);
  EXPECT_EQ(window->capturedRegion, b.get());
  EXPECT_EQ(LookX(*b), 20);
  Mouse(MWindow::kButtonDown, 20, 20);
  EXPECT_EQ(LookX(*b), 27);
  EXPECT_EQ(b->labelText->bounds.top, 1);  // pressed in by a pixel
  EXPECT_EQ(window->focusRegion, b.get());
  Mouse(MWindow::kButtonUp, 20, 20);
  EXPECT_EQ(b->pressState, MButton::kHover);
  EXPECT_EQ(window->capturedRegion, nullptr);
  EXPECT_EQ(b->labelText->bounds.top, 0);
  EXPECT_EQ(Take(), (Notes{{7, 0}, {7, 3}, {7, 2}}));
  // A release in the hover state only lays out again.
  Mouse(MWindow::kButtonUp, 20, 20);
  EXPECT_TRUE(Take().empty());
}

TEST_F(MButtonTest, DraggingOutAndBackSwapsLooksAndReleaseOutsideGives4) {
  auto b = Button();
  Mouse(MWindow::kMouseMove, 20, 20);
  Mouse(MWindow::kButtonDown, 20, 20);
  Take();
  Mouse(MWindow::kMouseMove, 150, 20);
  EXPECT_EQ(b->pressState, MButton::kPressedOutside);
  EXPECT_EQ(LookX(*b), 20);
  Mouse(MWindow::kMouseMove, 160, 20);  // still outside: nothing new
  Mouse(MWindow::kMouseMove, 30, 20);
  EXPECT_EQ(b->labelText->bounds.top, 1);
  Mouse(MWindow::kMouseMove, 150, 20);
  Mouse(MWindow::kButtonUp, 150, 20);
  EXPECT_EQ(b->pressState, MButton::kIdle);
  EXPECT_EQ(LookX(*b), 13);
  EXPECT_FALSE(fakeHost->captured);
  EXPECT_EQ(Take(), (Notes{{7, 1}, {7, 0}, {7, 1}, {7, 4}}));
}

TEST_F(MButtonTest, LeavingFromHoverReturnsTheCaptureAndLetsOthersSeeTheMove) {
  auto b = Button();
  Mouse(MWindow::kMouseMove, 20, 20);
  Mouse(MWindow::kMouseMove, 150, 20);
  EXPECT_EQ(window->capturedRegion, nullptr);
  EXPECT_EQ(Take(), (Notes{{7, 0}, {7, 1}}));
}

TEST_F(MButtonTest, AKeyboardPressWithoutAMoveStillClicks) {
  auto b = Button();
  Mouse(MWindow::kButtonDown, 12, 12);
  EXPECT_EQ(window->capturedRegion, nullptr);  // the press takes no capture of its own
  Mouse(MWindow::kButtonUp, 12, 12);
  EXPECT_EQ(Take(), (Notes{{7, 3}, {7, 2}}));
}

TEST_F(MButtonTest, ADisabledButtonConsumesNothingAndForgetsItsPress) {
  auto b = Button();
  Mouse(MWindow::kButtonDown, 20, 20);
  b->SetEnabled(false);
  EXPECT_EQ(b->pressState, MButton::kIdle);
  EXPECT_EQ(LookX(*b), 6);
  Take();
  Mouse(MWindow::kMouseMove, 20, 20);
  Mouse(MWindow::kButtonUp, 20, 20);
  EXPECT_TRUE(Take().empty());
  b->SetEnabled(true);
  EXPECT_EQ(LookX(*b), 13);
}

TEST_F(MButtonTest, ACheckboxTogglesOnAClickAndLooksTheWayItIs) {
  std::unique_ptr<MCheckboxButton> box(MakeCheckbox(window, skin, false));
  box->bounds = MRect::FromSize(0, 0, 15, 15);
  window->AttachRegion(box.get());
  box->Layout();
  Mouse(MWindow::kMouseMove, 5, 5);
  EXPECT_EQ(box->left->sourceRect.x, 19);
  Mouse(MWindow::kButtonDown, 5, 5);
  EXPECT_EQ(box->left->sourceRect.y, 0);  // pressed looks as normal
  Mouse(MWindow::kButtonUp, 5, 5);
  EXPECT_EQ(box->checked, 1);
  EXPECT_EQ(box->left->sourceRect.y, 15);  // checked hover
  // The next click, from the hover state, unticks it.
  Mouse(MWindow::kButtonDown, 5, 5);
  Mouse(MWindow::kButtonUp, 5, 5);
  EXPECT_EQ(box->checked, 0);

  // A label sharing the box's handler toggles the box.
  MTextArea label(window, 13, true, false);
  label.bounds = MRect::FromSize(20, 0, 100, 15);
  label.handler = box->handler;
  label.handlerContext = box.get();
  window->AttachRegion(&label);
  Mouse(MWindow::kButtonDown, 40, 5);
  Mouse(MWindow::kButtonUp, 40, 5);
  EXPECT_EQ(box->checked, 1);
  label.Detach();

  std::unique_ptr<MCheckboxButton> ticked(MakeCheckbox(window, skin, true));
  ticked->Layout();
  EXPECT_EQ(ticked->left->sourceRect.y, 15);
}

TEST_F(MButtonTest, ARadioGroupSelectsThroughItsChosenButtonAndKeepsItsArrayFromIndexOne) {
  MRadioGroup group;
  std::vector<std::unique_ptr<MRadioButton>> radios;
  for (int i = 0; i < 4; ++i) {
    radios.emplace_back(MakeRadio(window, skin, i == 1, 10 + i, &group));
    radios.back()->bounds = MRect::FromSize(0, 20 * i, 15, 15);
    window->AttachRegion(radios.back().get());
    radios.back()->Layout();
  }
  EXPECT_EQ(group.selected, radios[1].get());
  EXPECT_EQ(group.capacity, 6u);  // doubled when the fourth arrived
  EXPECT_EQ(group.buttons[0], nullptr);
  EXPECT_EQ(group.buttons[4], radios[3].get());

  auto click = [&](int y) {
    Mouse(MWindow::kMouseMove, 5, y);
    Mouse(MWindow::kButtonDown, 5, y);
    Mouse(MWindow::kButtonUp, 5, y);
    Mouse(MWindow::kMouseMove, 100, 100);
  };
  click(45);
  EXPECT_EQ(group.selected, radios[2].get());
  EXPECT_EQ(radios[1]->left->sourceRect.y, 140);  // normal look again
  click(45);  // a second click changes nothing
  EXPECT_EQ(radios[2]->checked, 1);
  EXPECT_EQ(radios[2]->left->sourceRect.y, 155);
}

TEST_F(MButtonTest, ProgressFillFollowsTheValueWithinItsBounds) {
  MScale3Data track{skin, {4, 44, 4, 33}, {8, 44, 1, 33}, {9, 44, 4, 33}, 2};
  MScale3Data fill{skin, {2, 77, 1, 29}, {3, 77, 1, 29}, {4, 77, 2, 29}, 2};
  MProgressBar bar(window, &track, &fill);
  bar.bounds = MRect::FromSize(94, 87, 360, 33);
  struct Row {
    int32_t value, kept, width;
    bool shown;
  };
  for (Row row : {Row{0, 0, 7, false}, Row{-5, 0, 7, false}, Row{1, 1, 10, true}, Row{100, 100, 357, true}, Row{150, 100, 357, true}}) {
    bar.value = row.value;
    bar.Layout();
    EXPECT_EQ(bar.value, row.kept) << row.value;
    EXPECT_EQ(bar.fill.bounds, MRect::FromSize(2, 2, row.width, 29)) << row.value;
    EXPECT_EQ(bar.track.Next() == &bar.fill, row.shown) << row.value;
  }
}

}  // namespace
}  // namespace SASM
