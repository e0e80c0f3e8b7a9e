#include "ui/panels/MUIPanelMaintain.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerWindowFixture.h"
#include "ui/panels/MUIPanelProgress.h"
#include "ui/panels/MUIPanelUninstallerSplash.h"

namespace SASM {
namespace {

using MaintainPanelTest = InstallerWindowFixture;

TEST_F(MaintainPanelTest, ReinstallIsConsumedAndDoesNothing) {
  MUIPanel* panel = OpenPanel(2);
  EXPECT_TRUE(panel->HandleEvent(200, 2, 0));
  EXPECT_EQ(window->ActivePanel(), panel);
  EXPECT_TRUE(QuitCodes().empty());
  EXPECT_TRUE(notes.empty());
  EXPECT_EQ(window->progressPanel->callback, nullptr);
}

TEST_F(MaintainPanelTest, UninstallGoesStraightToTheBarWithoutAConflictCheck) {
  OpenPanel(2);
  Click(201);
  EXPECT_EQ(window->ActivePanel(), window->progressPanel);
  EXPECT_TRUE(shim.askedMasks.empty());
  EXPECT_TRUE(Notified(6).empty());
  EXPECT_EQ(window->progressPanel->callback, &MUIPanelUninstallerSplash::UninstallDoneCallback);
  EXPECT_EQ(window->progressPanel->step, -2.0f);
  EXPECT_EQ(window->maintainPanel->uninstallButton->parent, nullptr);
}

TEST_F(MaintainPanelTest, DoneOnTheRightFinishesWithZero) {
  OpenPanel(2);
  EXPECT_FALSE(window->leftButton->visible);
  EXPECT_EQ(LabelOf(window->rightButton), "<16>");
  Click(101);
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0}));
}

}  // namespace
}  // namespace SASM
