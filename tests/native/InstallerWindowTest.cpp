#include "ui/panels/MInstallerWindow.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerWindowFixture.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Section.h"
#include "ui/panels/MUIPanelFailure.h"
#include "ui/panels/MUIPanelMaintain.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"

namespace SASM {
namespace {

using InstallerWindowTest = InstallerWindowFixture;

TEST_F(InstallerWindowTest, StartsHiddenAt100By100WithHiddenButtonsAndNoPanel) {
  Open();
  EXPECT_FALSE(fakeHost->shown);
  EXPECT_EQ(window->rect.right, 100);
  EXPECT_EQ(window->rect.bottom, 100);
  EXPECT_EQ(window->ActivePanel(), nullptr);
  EXPECT_FALSE(window->leftButton->visible);
  EXPECT_FALSE(window->rightButton->visible);
  EXPECT_EQ(LabelOf(window->leftButton), "<17>");
  EXPECT_EQ(LabelOf(window->rightButton), "<18>");
  EXPECT_EQ(window->installerSplash, nullptr);  // built on first use
}

TEST_F(InstallerWindowTest, ResizePlacesBarButtonsAndRoot) {
  Open();
  window->SizeFromStrings();  // no width text: 450
  EXPECT_EQ(fakeHost->applied.back(), MRect::FromSize(0, 0, 450, 345));
  EXPECT_EQ(window->bottomBar->bounds, MRect::FromSize(0, 277, 450, 67));
  EXPECT_EQ(window->rightButton->bounds, MRect::FromSize(294, 18, 140, 33));
  EXPECT_EQ(window->leftButton->bounds, MRect::FromSize(94, 18, 140, 33));
  EXPECT_EQ(window->root->bounds, MRect::FromSize(0, 0, 450, 279));
}

TEST_F(InstallerWindowTest, WidthComesFromTheLeadingDigitsOfString71) {
  SetString(71, u"512px");
  Open();
  window->SizeFromStrings();
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 512, 345));
}

TEST_F(InstallerWindowTest, FlagsExactly130FromSource4OfferRemindMeLater) {
  host.flags = 130;
  host.installSource = 4;
  Open();
  EXPECT_EQ(LabelOf(window->leftButton), "<34>");
  FakeInstallerHost other;
  other.flags = 130 | 1024;
  other.installSource = 4;
  MorphUI otherUi(&other, nullptr, std::make_unique<FakeWindowSystem>());
  otherUi.SetWindow(new MInstallerWindow(&otherUi));
  EXPECT_EQ(LabelOf(static_cast<MInstallerWindow*>(otherUi.window)->leftButton), "<17>");
}

TEST_F(InstallerWindowTest, SessionModes1And2TurnTheRightButtonIntoDownload) {
  for (uint32_t mode : {1u, 2u, 3u}) {
    FakeInstallerHost other;
    other.sessionMode = mode;
    MorphUI otherUi(&other, nullptr, std::make_unique<FakeWindowSystem>());
    otherUi.SetWindow(new MInstallerWindow(&otherUi));
    EXPECT_EQ(LabelOf(static_cast<MInstallerWindow*>(otherUi.window)->rightButton), mode < 3 ? "<39>" : "<18>");
  }
}

TEST_F(InstallerWindowTest, OpenRequestsBuildEachPanelOnceAndOnlyTheSplashesShowTheWindow) {
  MUIPanel* maintain = OpenPanel(2);
  EXPECT_EQ(maintain, window->maintainPanel);
  EXPECT_FALSE(fakeHost->shown);
  EXPECT_EQ(window->rect.right, 100);
  MUIPanel* splash = OpenPanel(1);
  EXPECT_EQ(splash, window->uninstallerSplash);
  EXPECT_TRUE(fakeHost->shown);
  EXPECT_EQ(OpenPanel(2), maintain);  // built once
  EXPECT_EQ(window->root->firstChild, maintain);
  EXPECT_EQ(maintain->Next(), nullptr);
}

TEST_F(InstallerWindowTest, UnknownPanelNumberChangesNothing) {
  MUIPanel* splash = OpenPanel(0);
  const auto invalidated = fakeHost->invalidated.size();
  EXPECT_EQ(OpenPanel(7), splash);
  EXPECT_EQ(fakeHost->invalidated.size(), invalidated);
  EXPECT_EQ(window->uninstallerSplash, nullptr);
  EXPECT_EQ(window->maintainPanel, nullptr);
  EXPECT_EQ(window->autoUpdatePanel, nullptr);
}

TEST_F(InstallerWindowTest, FinishCommandExitsWithItsCode) {
  Open();
  Send(3, 5, 3);  // no panel yet
  OpenPanel(1);
  Send(3, 5, 42);
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{3, 42}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{3, 42}));
}

TEST_F(InstallerWindowTest, FailureEventSwitchesToTheFailurePanelTrimmedAboveTheBar) {
  MUIPanel* splash = OpenPanel(0);
  Send(4, 8, 0);
  EXPECT_EQ(window->ActivePanel(), window->failurePanel);
  EXPECT_EQ(window->root->firstChild->Next(), nullptr);
  EXPECT_EQ(window->failurePanel->bounds, MRect::FromEdges(0, 0, 450, 279));
  EXPECT_EQ(splash->firstChild, nullptr);  // the splash was told it is hidden
}

TEST_F(InstallerWindowTest, CloseDropsTheTransientPanelsThenExits1039) {
  OpenPanel(3);
  window->OnClose();
  EXPECT_EQ(window->failurePanel, nullptr);
  EXPECT_EQ(window->autoUpdatePanel, nullptr);
  EXPECT_EQ(window->ActivePanel(), nullptr);  // the shown one is not left under root
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{1039}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{1039}));
}

TEST_F(InstallerWindowTest, SetButtonEnabledDimsTheLabelAndPicksTheLook) {
  Open();
  MButton* b = window->rightButton;
  window->SetButtonEnabled(b, false);
  EXPECT_FALSE(b->enabled);
  EXPECT_EQ(b->labelText->alpha, 128);
  EXPECT_EQ(b->data, b->disabledData);
  window->SetButtonEnabled(b, true);
  EXPECT_EQ(b->labelText->alpha, 255);
  EXPECT_EQ(b->data, b->normalData);
}

TEST_F(InstallerWindowTest, FocusRingFollowsTheFocusedRegionThroughAResize) {
  OpenPanel(0);
  MButton* b = window->leftButton;
  window->SetFocusRegion(b, true);
  EXPECT_TRUE(window->focusRing->visible);
  EXPECT_EQ(fakeHost->focus, b->nativeWindow);
  window->rect = MRect::FromSize(0, 0, 450, 400);
  window->ApplyRect(false, true);
  const MRect around = b->AbsoluteBounds();
  EXPECT_EQ(window->focusRing->bounds, MRect::FromEdges(around.left - 5, around.top - 5, around.right + 5, around.bottom + 5));
  window->SetFocusRegion(nullptr, false);
  EXPECT_FALSE(window->ringVisible);
  EXPECT_FALSE(window->focusRing->visible);
  EXPECT_EQ(fakeHost->focus, nullptr);
}

}  // namespace
}  // namespace SASM
