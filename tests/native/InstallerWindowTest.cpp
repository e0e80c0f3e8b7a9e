#include "ui/panels/MInstallerWindow.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerWindowFixture.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Section.h"
#include "ui/panels/MUIPanelAutoUpdate.h"
#include "ui/panels/MUIPanelFailure.h"
#include "ui/panels/MUIPanelInstallerSplash.h"
#include "ui/panels/MUIPanelMaintain.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"

namespace SASM {
namespace {

using InstallerWindowTest = InstallerWindowFixture;

TEST_F(InstallerWindowTest, CreationBuildsTheBarHiddenAndNoPanel) {
  Open();
  EXPECT_EQ(window->backgroundColor, 3355442u);
  EXPECT_FALSE(fakeHost->shown);
  EXPECT_EQ(window->rect.right, 100);
  EXPECT_EQ(window->rect.bottom, 100);
  EXPECT_EQ(window->skinImage, &skinPixels);
  EXPECT_EQ(window->bannerImage, &bannerPixels);
  EXPECT_EQ(window->ActivePanel(), nullptr);
  EXPECT_EQ(window->leftButton->controlId, 100);
  EXPECT_EQ(window->rightButton->controlId, 101);
  EXPECT_FALSE(window->leftButton->visible);
  EXPECT_FALSE(window->rightButton->visible);
  EXPECT_EQ(LabelOf(window->leftButton), "<17>");
  EXPECT_EQ(LabelOf(window->rightButton), "<18>");
  EXPECT_NE(window->conflictsPanel, nullptr);
  EXPECT_NE(window->progressPanel, nullptr);
  EXPECT_NE(window->failurePanel, nullptr);
  EXPECT_EQ(window->installerSplash, nullptr);
  EXPECT_EQ(window->maintainPanel, nullptr);
  EXPECT_FALSE(window->focusRing->visible);
  EXPECT_FALSE(window->restartText->visible);
  EXPECT_FALSE(window->restartIcon->visible);
  EXPECT_EQ(window->restartText->bounds, MRect::FromEdges(117, 25, 400, 42));
  EXPECT_EQ(window->restartIcon->bounds, MRect::FromEdges(97, 25, 112, 40));
}

TEST_F(InstallerWindowTest, AnotherPlayersConflictMovesTheRestartNoteAside) {
  shim.badPlayer = true;
  Open();
  EXPECT_EQ(window->restartText->bounds, MRect::FromEdges(367, 45, 650, 62));
  EXPECT_EQ(window->restartIcon->bounds, MRect::FromEdges(347, 45, 362, 60));
}

TEST_F(InstallerWindowTest, ResizePlacesBarButtonsAndRoot) {
  Open();
  window->SizeFromStrings();  // no width text: 450 by 345
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 450, 345));
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

TEST_F(InstallerWindowTest, LeftButtonOffersRemindMeLaterOnlyForFlags130FromSource4) {
  host.flags = 130;
  host.installSource = 4;
  Open();
  EXPECT_EQ(LabelOf(window->leftButton), "<34>");
}

TEST_F(InstallerWindowTest, LeftButtonQuitsForOtherFlags) {
  host.flags = 131;
  host.installSource = 4;
  Open();
  EXPECT_EQ(LabelOf(window->leftButton), "<17>");
}

TEST_F(InstallerWindowTest, SessionModes1And2TurnTheRightButtonIntoDownload) {
  for (uint32_t mode : {0u, 1u, 2u, 3u}) {
    FakeInstallerHost other;
    other.sessionMode = mode;
    other.shim = &shim;
    MorphUI otherUi(&other, nullptr, std::make_unique<FakeWindowSystem>());
    auto* w = new MInstallerWindow(&otherUi);
    otherUi.SetWindow(w);
    EXPECT_EQ(LabelOf(w->rightButton), mode == 1 || mode == 2 ? "<39>" : "<18>") << mode;
  }
}

TEST_F(InstallerWindowTest, OpenRequestsBuildEachPanelOnceAndShowTheSplashes) {
  Open();
  MUIPanel* splash = OpenPanel(0);
  ASSERT_NE(splash, nullptr);
  EXPECT_EQ(splash, window->installerSplash);
  EXPECT_TRUE(fakeHost->shown);
  EXPECT_EQ(OpenPanel(0), splash);  // built once
  EXPECT_EQ(window->root->firstChild, splash);
  EXPECT_EQ(splash->Next(), nullptr);
}

TEST_F(InstallerWindowTest, UninstallerSplashShowsTheWindow) {
  MUIPanel* splash = OpenPanel(1);
  EXPECT_EQ(splash, window->uninstallerSplash);
  EXPECT_TRUE(fakeHost->shown);
  EXPECT_EQ(LabelOf(window->rightButton), "<21>");
  EXPECT_EQ(window->rightButton->label.ToUtf8(), "<21>");
}

TEST_F(InstallerWindowTest, MaintainPanelLeavesTheWindowAsItWas) {
  MUIPanel* panel = OpenPanel(2);
  EXPECT_EQ(panel, window->maintainPanel);
  EXPECT_FALSE(fakeHost->shown);
  EXPECT_EQ(window->rect.right, 100);
}

TEST_F(InstallerWindowTest, AutoUpdateRequestBuildsThatPanel) {
  OpenPanel(3);
  EXPECT_NE(window->autoUpdatePanel, nullptr);
}

TEST_F(InstallerWindowTest, UnknownPanelNumberChangesNothing) {
  Open();
  MUIPanel* splash = OpenPanel(0);
  const auto invalidated = fakeHost->invalidated.size();
  EXPECT_EQ(OpenPanel(7), splash);
  EXPECT_EQ(fakeHost->invalidated.size(), invalidated);
  EXPECT_EQ(window->uninstallerSplash, nullptr);
  EXPECT_EQ(window->maintainPanel, nullptr);
  EXPECT_EQ(window->autoUpdatePanel, nullptr);
}

TEST_F(InstallerWindowTest, FinishCommandExitsWithItsCodeFromAnyPanel) {
  OpenPanel(1);
  Send(3, 5, 42);
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{42}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{42}));
}

TEST_F(InstallerWindowTest, FinishCommandExitsEvenWithNoPanel) {
  Open();
  Send(3, 5, 3);
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{3}));
}

TEST_F(InstallerWindowTest, FailureEventSwitchesToTheFailurePanel) {
  OpenPanel(0);
  Send(4, 8, 0);
  EXPECT_EQ(window->ActivePanel(), window->failurePanel);
  EXPECT_EQ(window->root->firstChild->Next(), nullptr);
}

TEST_F(InstallerWindowTest, CloseDropsTheTransientPanelsThenExits1039) {
  OpenPanel(3);
  window->OnClose();
  EXPECT_EQ(window->failurePanel, nullptr);
  EXPECT_EQ(window->autoUpdatePanel, nullptr);
  EXPECT_EQ(window->ActivePanel(), nullptr);
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{1039}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{1039}));
}

TEST_F(InstallerWindowTest, ShowingAPanelHidesTheOldOneAndTrimsTheBarOff) {
  OpenPanel(0);
  window->ShowPanel(window->failurePanel);
  EXPECT_EQ(window->installerSplash->firstChild, nullptr);  // the splash dropped its controls
  EXPECT_EQ(window->failurePanel->parent, window->root);
  EXPECT_EQ(window->failurePanel->bounds, MRect::FromEdges(0, 0, 450, 279));
}

TEST_F(InstallerWindowTest, SetButtonEnabledDimsTheLabelAndPicksTheLook) {
  Open();
  MButton* b = window->rightButton;
  window->SetButtonEnabled(b, false);
  EXPECT_FALSE(b->enabled);
  EXPECT_EQ(b->labelText->alpha, 128);
  EXPECT_EQ(b->data, b->disabledData);
  window->SetButtonEnabled(b, true);
  EXPECT_TRUE(b->enabled);
  EXPECT_EQ(b->labelText->alpha, 255);
  EXPECT_EQ(b->data, b->normalData);
}

TEST_F(InstallerWindowTest, FocusRingFollowsTheFocusedRegionAndItsNativeWindow) {
  OpenPanel(0);
  window->SizeFromStrings();
  MButton* b = window->leftButton;
  window->SetFocusRegion(b, true);
  EXPECT_TRUE(window->ringVisible);
  EXPECT_TRUE(window->focusRing->visible);
  EXPECT_EQ(fakeHost->focus, b->nativeWindow);
  const MRect around = b->AbsoluteBounds();
  EXPECT_EQ(window->focusRing->bounds, MRect::FromEdges(around.left - 5, around.top - 5, around.right + 5, around.bottom + 5));
  // A resize moves the bar; the ring follows.
  window->rect = MRect::FromSize(0, 0, 450, 400);
  window->ApplyRect(false, true);
  EXPECT_EQ(window->focusRing->bounds.top, b->AbsoluteBounds().top - 5);
  window->SetFocusRegion(nullptr, false);
  EXPECT_FALSE(window->ringVisible);
  EXPECT_FALSE(window->focusRing->visible);
  EXPECT_EQ(fakeHost->focus, nullptr);
}

}  // namespace
}  // namespace SASM
