#include "ui/panels/MUIPanelConflicts.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerPanelWorld.h"
#include "ui/panels/MUIPanelProgress.h"

namespace SASM {
namespace {

class ConflictsPanelTest : public InstallerPanelWorld {
 protected:
  MUIPanelConflicts& Panel() { return *window->conflictsPanel; }
  void ShowConflicts() { window->ShowPanel(window->conflictsPanel); }
  void Poll() { window->HandleEvent(MInstallerWindow::kTickEventId, MInstallerWindow::kConflictPoll, 0); }
  std::vector<std::string> VisibleNames() {
    std::vector<std::string> names;
    for (auto* row : Panel().rows)
      if (row->visible) names.push_back(Text(row->nameText));
    return names;
  }
  static constexpr char16_t kManager[] = u"C:\\Windows\\system32\\LumenPlayerApp.exe";
  // Another program holds the settings manager open, so it cannot be written.
  void HoldManager(const char* content) {
    files.AddFile(kManager, content);
    FileHandleId handle = 0;
    ASSERT_EQ(files.Open(kManager, 4, handle), 0);
  }
};

TEST_F(ConflictsPanelTest, FiveNamesFillTheRowsAndFurtherOnesAreOnlyCounted) {
  panelShim.conflicts = {u"Lumen Viewer", u"Brightpad", u"Corva Notes", u"Pathfinder", u"Mailroom"};
  EXPECT_TRUE(Panel().RefreshConflicts(8));
  EXPECT_EQ(VisibleNames(),
            (std::vector<std::string>{"Lumen Viewer", "Brightpad", "Corva Notes", "Pathfinder", "Mailroom"}));

  panelShim.conflicts.push_back(u"Sixth App");
  EXPECT_TRUE(Panel().RefreshConflicts(8));
  ASSERT_TRUE(Panel().rows[5]->visible);
  EXPECT_EQ(Text(Panel().rows[5]->nameText), "And 1 more");
  EXPECT_EQ(Text(Panel().rows[4]->nameText), "Mailroom");

  panelShim.conflicts = {u"Brightpad", u"Mailroom"};
  Panel().RefreshConflicts(8);
  EXPECT_EQ(VisibleNames(), (std::vector<std::string>{"Brightpad", "Mailroom"}));
}

TEST_F(ConflictsPanelTest, ListThatCannotBeMadeCountsAsNoConflictAndHandsOver) {
  panelShim.conflictsFail = true;
  EXPECT_FALSE(Panel().RefreshConflicts(8));
  ShowConflicts();
  EXPECT_EQ(window->ActivePanel(), window->progressPanel);
  EXPECT_EQ(CountCalls("NotifyConflictsCleared"), 1);
}

TEST_F(ConflictsPanelTest, StaysWhileProgramsRunShowsNewOnesAtThePollAndHandsOverWhenTheLastGoes) {
  productMask = 16 | 32768;
  panelShim.conflicts = {u"Brightpad"};
  window->rightButton->SetVisible(true);
  ShowConflicts();
  ASSERT_EQ(window->ActivePanel(), window->conflictsPanel);
  EXPECT_EQ(panelShim.askedMasks, (std::vector<uint32_t>{16 | 32768}));
  EXPECT_FALSE(window->rightButton->visible);
  EXPECT_EQ(window->targetRect.bottom, 345);
  EXPECT_EQ(VisibleNames(), (std::vector<std::string>{"Brightpad"}));

  panelShim.conflicts = {u"Brightpad", u"Mailroom", u"Corva Notes"};
  Poll();
  EXPECT_EQ(VisibleNames(), (std::vector<std::string>{"Brightpad", "Mailroom", "Corva Notes"}));
  EXPECT_EQ(CountCalls("NotifyConflictsCleared"), 0);

  // No conflict before and none now is not a change: nothing happens.
  Panel().anyConflict = 0;
  panelShim.conflicts.clear();
  Poll();
  EXPECT_EQ(window->ActivePanel(), window->conflictsPanel);
  Panel().anyConflict = 1;
  Poll();
  EXPECT_EQ(window->ActivePanel(), window->progressPanel);
  EXPECT_EQ(CountCalls("NotifyConflictsCleared"), 1);
  EXPECT_TRUE(window->rightButton->visible);
}

TEST_F(ConflictsPanelTest, OptionalCheckIsSkippedUnlessTheSettingsManagerIsHeld) {
  host.conflictsBlockInstall = false;
  host.conflictCheckIsOptional = true;
  panelShim.conflicts = {u"Brightpad"};
  EXPECT_FALSE(Panel().IsControlFileLocked());
  ShowConflicts();
  EXPECT_EQ(window->ActivePanel(), window->progressPanel);
  EXPECT_TRUE(panelShim.askedMasks.empty());
  EXPECT_EQ(CountCalls("NotifyConflictsCleared"), 0) << "the skip is not a clearing";
}

TEST_F(ConflictsPanelTest, HeldSettingsManagerMakesTheOptionalCheckRunButAnEmptyOneDoesNot) {
  host.conflictsBlockInstall = false;
  host.conflictCheckIsOptional = true;
  files.AddFile(u"C:\\Windows\\system32\\Empty.exe", "");
  FileHandleId handle = 0;
  ASSERT_EQ(files.Open(u"C:\\Windows\\system32\\Empty.exe", 4, handle), 0);
  host.settingsManager = u"Empty.exe";
  EXPECT_FALSE(Panel().IsControlFileLocked());
  host.settingsManager = u"LumenPlayerApp.exe";
  HoldManager("program");
  EXPECT_TRUE(Panel().IsControlFileLocked());
  panelShim.conflicts = {u"Brightpad"};
  ShowConflicts();
  EXPECT_EQ(window->ActivePanel(), window->conflictsPanel);
  EXPECT_EQ(VisibleNames(), (std::vector<std::string>{"Brightpad"}));
}

TEST_F(ConflictsPanelTest, PollsOncePerThirtyOneTimerMessages) {
  panelShim.conflicts = {u"Brightpad"};
  ShowConflicts();
  ASSERT_EQ(window->ActivePanel(), window->conflictsPanel);
  System().posted.clear();
  for (int i = 0; i < 30; ++i) window->OnTimer();
  EXPECT_EQ(PostedOf(MInstallerWindow::kConflictPoll), 0u);
  window->OnTimer();
  EXPECT_EQ(PostedOf(MInstallerWindow::kConflictPoll), 1u);
  EXPECT_EQ(Panel().pollTicks, 0u);
  for (int i = 0; i < 31; ++i) window->OnTimer();
  EXPECT_EQ(PostedOf(MInstallerWindow::kConflictPoll), 2u);
  MPoint point;
  MUIPanelConflicts::PollTimer(&Panel(), window, &point, true, MWindow::kMouseMove, &Panel());
  EXPECT_EQ(Panel().pollTicks, 0u) << "only timer messages count";
}

}  // namespace
}  // namespace SASM
