#include "ui/panels/MUIPanelUninstallerSplash.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerWindowFixture.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {
namespace {

class UninstallerSplashTest : public InstallerWindowFixture {
 protected:
  bool Done(int32_t code) {
    return MUIPanelUninstallerSplash::UninstallDoneCallback(window->progressPanel, code, 0, nullptr);
  }
};

TEST_F(UninstallerSplashTest, QuitFinishesWithZeroAndUninstallArmsTheBarDownwards) {
  MUIPanel* splash = OpenPanel(1);
  EXPECT_EQ(LabelOf(window->rightButton), "<21>");
  EXPECT_EQ(window->rightButton->label.ToUtf8(), "<21>");  // the accessible name too
  Click(101);
  MUIPanelProgress* p = window->progressPanel;
  EXPECT_EQ(p->callback, &MUIPanelUninstallerSplash::UninstallDoneCallback);
  EXPECT_EQ(p->callbackContext, nullptr);
  EXPECT_EQ(p->current, 100.0f);
  EXPECT_EQ(p->target, 0.0f);
  EXPECT_EQ(p->step, -2.0f);
  EXPECT_NE(window->ActivePanel(), splash);
  splash->HandleEvent(100, 2, 0);
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0}));
}

TEST_F(UninstallerSplashTest, EndOfTheBarStartsTheRemovalAndOnlyDoneExits) {
  OpenPanel(1);
  window->SetButtonEnabled(window->rightButton, false);
  EXPECT_TRUE(Done(5));
  EXPECT_EQ(host.calls, (std::vector<std::string>{"BeginRemoval"}));
  EXPECT_EQ(Notified(3), (std::vector<intptr_t>{0}));
  EXPECT_TRUE(window->rightButton->enabled);
  EXPECT_FALSE(Done(1));  // no unattended exit
  EXPECT_TRUE(QuitCodes().empty());
  EXPECT_TRUE(Done(0));
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0}));
}

}  // namespace
}  // namespace SASM
