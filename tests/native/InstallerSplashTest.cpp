#include "ui/panels/MUIPanelInstallerSplash.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerWindowFixture.h"
#include "ui/MCheckboxButton.h"
#include "ui/MScale9Section.h"
#include "ui/MTooltipArea.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {
namespace {

class InstallerSplashTest : public InstallerWindowFixture {
 protected:
  MUIPanelInstallerSplash* Splash() {
    OpenPanel(0);
    return window->installerSplash;
  }
  // A press and release at a window point, then the click the control posted.
  void ClickAt(int32_t x, int32_t y) {
    System().posted.clear();
    const uint32_t at = static_cast<uint32_t>(x) | (static_cast<uint32_t>(y) << 16);
    window->OnMouse(MWindow::kButtonDown, at);
    window->OnMouse(MWindow::kButtonUp, at);
    for (const auto& [id, message] : Posted())
      if (message == MButton::kClicked) Send(id, message);
  }
  bool Done(int32_t code) {
    return MUIPanelInstallerSplash::InstallDoneCallback(window->progressPanel, code, 0, window->installerSplash);
  }
};

TEST_F(InstallerSplashTest, ShowsTheWindowTitledWithTheLicenceRowAboveTheBar) {
  SetString(29, u"Lumen ^ setup");
  MUIPanelInstallerSplash* s = Splash();
  EXPECT_TRUE(fakeHost->shown);
  EXPECT_EQ(fakeHost->title, u"Lumen 28.0 setup");
  EXPECT_EQ(fakeHost->broughtToFront, 0);
  EXPECT_EQ(s->licenseCheckbox->bounds, MRect::FromSize(96, 230, 15, 15));
  EXPECT_EQ(s->licenseLabel->bounds, MRect::FromSize(115, 229, 402, 20));
  EXPECT_EQ(s->licenseLink->bounds, MRect::FromSize(117, 249, 402, 20));
  EXPECT_EQ(s->installTooltip->bounds, MRect::FromSize(0, 0, 140, 33));
}

TEST_F(InstallerSplashTest, InstallFollowsTheLicenceBoxAndTheTipShowsWhileItIsClear) {
  MUIPanelInstallerSplash* s = Splash();
  EXPECT_FALSE(window->rightButton->enabled);
  EXPECT_TRUE(s->installTooltip->active);
  // A click on the words toggles the box, as the box itself would.
  ClickAt(120, 235);
  EXPECT_EQ(s->licenseCheckbox->checked, 1);
  EXPECT_TRUE(window->rightButton->enabled);
  EXPECT_FALSE(s->installTooltip->active);
  ClickAt(100, 235);  // the box
  EXPECT_EQ(s->licenseCheckbox->checked, 0);
  EXPECT_FALSE(window->rightButton->enabled);
  EXPECT_TRUE(s->installTooltip->active);
}

TEST_F(InstallerSplashTest, TextOffsetFollowsTheThreadLocale) {
  for (uint32_t locale : {1041u, 1042u}) {
    System().threadLocale = locale;
    MUIPanelInstallerSplash* s = Splash();
    Send(2, 2, 0);
    const int32_t expected = locale == 1042 ? 0 : 3;  // Korean keeps the plain offset here
    EXPECT_EQ(s->licenseLink->verticalOffset, expected) << locale;
    EXPECT_EQ(s->licenseLabel->verticalOffset, expected) << locale;
  }
}

TEST_F(InstallerSplashTest, ExpressInstallerPropertyBringsTheWindowToTheFront) {
  host.AddSettings(u"ExpressInstallerURL /x;");
  Splash();
  EXPECT_EQ(fakeHost->broughtToFront, 1);
}

TEST_F(InstallerSplashTest, QuitLeavesWith1039AndDropsTheTransientPanels) {
  Splash();
  Click(100);
  EXPECT_EQ(window->failurePanel, nullptr);
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{1039}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{1039}));
}

TEST_F(InstallerSplashTest, InstallArmsTheBarUpwardsAndLeavesTheSplashBare) {
  MUIPanelInstallerSplash* s = Splash();
  Click(101);
  MUIPanelProgress* p = window->progressPanel;
  EXPECT_EQ(p->callback, &MUIPanelInstallerSplash::InstallDoneCallback);
  EXPECT_EQ(p->callbackContext, s);
  EXPECT_EQ(p->current, 0.0f);
  EXPECT_EQ(p->target, 100.0f);
  EXPECT_EQ(p->step, 2.0f);
  EXPECT_TRUE(p->running);
  EXPECT_NE(window->ActivePanel(), s);
  EXPECT_EQ(s->firstChild, nullptr);
  EXPECT_EQ(s->installTooltip, nullptr);
  EXPECT_EQ(s->autoExitTicks, 0);
  EXPECT_TRUE(window->rightButton->visible);  // no delay asked for
  // A late resize of the bare splash touches nothing.
  s->HandleEvent(2, 2, 0);
}

TEST_F(InstallerSplashTest, AFocusedLicenceBoxTakesItsRingAlongWhenTheSplashEmpties) {
  MUIPanelInstallerSplash* s = Splash();
  window->SetFocusRegion(s->licenseCheckbox, true);
  ASSERT_TRUE(window->focusRing->visible);
  Click(101);
  EXPECT_EQ(window->focusRegion, nullptr);
  window->ApplyRect(false, true);  // a resize must not reach for the freed box
  EXPECT_FALSE(window->focusRing->visible);
  EXPECT_FALSE(window->ringVisible);
}

TEST_F(InstallerSplashTest, AutoExitDelayIsCountedInTicksOf16) {
  struct Row {
    const char16_t* settings;
    int32_t ticks;
  };
  for (const Row& row : {Row{u"AutoExitDelay;", 62}, Row{u"AutoExitDelay 15;", 0}, Row{u"AutoExitDelay 500;", 31},
                         Row{u"AutoExitDelay -40;", -3}}) {
    host.AddSettings(row.settings);  // newest first
    MUIPanelInstallerSplash* s = Splash();
    s->autoExitTicks = 99;
    Click(101);
    EXPECT_EQ(s->autoExitTicks, row.ticks) << row.ticks;
    EXPECT_FALSE(window->rightButton->visible);
    delete ui.window;
    ui.window = window = nullptr;
  }
}

TEST_F(InstallerSplashTest, ReachingTheTargetTellsTheHostAndEnablesDoneWithoutAutoExit) {
  host.restartRequired = true;
  shim.badPlayer = true;
  System().threadLocale = 1042;
  Splash();
  window->SetButtonEnabled(window->rightButton, false);
  EXPECT_TRUE(Done(5));
  EXPECT_EQ(Notified(2), (std::vector<intptr_t>{0}));
  EXPECT_TRUE(window->rightButton->enabled);
  EXPECT_TRUE(window->restartText->visible);
  EXPECT_TRUE(window->restartIcon->visible);
  EXPECT_EQ(window->restartText->verticalOffset, 1);
  EXPECT_TRUE(window->messageText->visible);
  EXPECT_EQ(window->messageText->text.ToUtf8(), "<72>");
  EXPECT_TRUE(QuitCodes().empty());
}

TEST_F(InstallerSplashTest, AutoExitKeepsDoneDisabledAndExitsWhenTheTicksRunOut) {
  Splash()->autoExitTicks = 2;
  window->SetButtonEnabled(window->rightButton, false);
  EXPECT_TRUE(Done(5));
  EXPECT_FALSE(window->rightButton->enabled);
  EXPECT_TRUE(Done(1));
  EXPECT_TRUE(QuitCodes().empty());
  EXPECT_TRUE(Done(1));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0}));
  EXPECT_EQ(shim.opened, (std::vector<std::string>{"<express>"}));
  EXPECT_EQ(shim.windows.front(), window->handle);
  EXPECT_EQ(window->failurePanel, nullptr);
}

TEST_F(InstallerSplashTest, WithoutTicksTheStoppedBarNeverExitsByItself) {
  Splash();
  EXPECT_TRUE(Done(1));
  EXPECT_TRUE(Done(1));
  EXPECT_TRUE(QuitCodes().empty());
  EXPECT_FALSE(Done(7));
  EXPECT_TRUE(Done(0));
  EXPECT_EQ(Notified(0), (std::vector<intptr_t>{0}));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0}));
}

}  // namespace
}  // namespace SASM
