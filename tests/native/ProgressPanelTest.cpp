#include "ui/panels/MUIPanelProgress.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerPanelWorld.h"
#include "ui/MProgressBar.h"
#include "ui/MRadioButton.h"

namespace SASM {
namespace {

class ProgressPanelTest : public InstallerPanelWorld {
 protected:
  MUIPanelProgress& Panel() { return *window->progressPanel; }
  static bool Record(MUIPanelProgress*, int32_t code, int32_t, void* context) {
    static_cast<ProgressPanelTest*>(context)->codes.push_back(code);
    return true;
  }
  void Arm(float from, float to, float by) {
    Panel().Arm(&Record, this, from, to, by);
    Panel().titleText->SetText(MString(u"Working"));
    window->ShowPanel(window->progressPanel);
  }
  void Tick(int times = 1) {
    for (int i = 0; i < times; ++i)
      window->HandleEvent(MInstallerWindow::kTickEventId, MInstallerWindow::kProgressTick, 0);
  }
  std::vector<int32_t> codes;
};

TEST_F(ProgressPanelTest, BarTakesFiftyTicksEndToEndThenReportsTargetOnceAndStoppedTicksAfter) {
  Arm(0.0f, 100.0f, 2.0f);
  const MRect titlePlace = Panel().titleText->bounds;
  Tick(49);
  EXPECT_EQ(Panel().bar->value, 98);
  EXPECT_EQ(Text(Panel().percentText), "98%");
  Tick();
  EXPECT_EQ(Panel().bar->value, 100);
  EXPECT_TRUE(codes.empty());
  Tick();
  EXPECT_EQ(codes, (std::vector<int32_t>{5}));
  EXPECT_FALSE(Panel().running);
  EXPECT_EQ(Text(Panel().percentText), "");
  // The title comes back bold, with mark-up, in the same place.
  MTextArea* title = Panel().titleText;
  EXPECT_TRUE(title->plainBold && title->hasMarkup);
  EXPECT_EQ(Text(title), "Working");
  EXPECT_EQ(title->bounds, titlePlace);
  EXPECT_EQ(title->parent, &Panel());
  Tick(2);
  EXPECT_EQ(codes, (std::vector<int32_t>{5, 1, 1}));

  codes.clear();
  Arm(100.0f, 0.0f, -2.0f);
  Tick(50);
  EXPECT_EQ(Panel().bar->value, 0);
  EXPECT_TRUE(codes.empty());
  Tick();
  EXPECT_EQ(codes, (std::vector<int32_t>{5}));
}

TEST_F(ProgressPanelTest, DoneStoresTheChosenRadioOnlyInAnUpdateChoiceRun) {
  Arm(100.0f, 100.0f, 2.0f);
  Click(MInstallerWindow::kRightButtonId);
  EXPECT_TRUE(host.storedUpdateChoices.empty());
  EXPECT_EQ(codes, (std::vector<int32_t>{0}));

  host.flags = 1024;
  Panel().radioGroup.Select(Panel().radios[2]);
  Click(MInstallerWindow::kRightButtonId);
  EXPECT_EQ(host.storedUpdateChoices, (std::vector<int32_t>{2}));
  EXPECT_EQ(codes, (std::vector<int32_t>{0, 0}));
}

TEST_F(ProgressPanelTest, VersionsCompareAsFourNumbers) {
  const MString base(MUIPanelProgress::kUpdateChoiceVersion);
  EXPECT_GT(MUIPanelProgress::CompareVersions(MString(u"11.3.0.1"), base), 0);
  EXPECT_GT(MUIPanelProgress::CompareVersions(MString(u"11.10.0.0"), base), 0) << "numbers, not letters";
  EXPECT_GT(MUIPanelProgress::CompareVersions(MString(u"12"), base), 0);
  EXPECT_EQ(MUIPanelProgress::CompareVersions(MString(u"11.3"), base), 0);
  EXPECT_LT(MUIPanelProgress::CompareVersions(MString(u"11.2.99.99"), base), 0);
  EXPECT_LT(MUIPanelProgress::CompareVersions(MString(u""), base), 0);
}

struct ChoiceCase {
  uint32_t flags;
  bool skips;
  const char16_t* pluginVersion;
  bool shown;
};

TEST_F(ProgressPanelTest, UpdateChoiceFollowsTheFlagUnlessSkippedOverANewerProduct) {
  const ChoiceCase cases[] = {
      {0, false, u"", false},
      {1024, false, u"", true},
      {1024, false, u"11.3.0.1", true},
      {1024, true, u"11.3.0.0", true},
      {1024, true, u"11.3.0.1", false},
  };
  for (const ChoiceCase& c : cases) {
    host.flags = c.flags;
    host.skipsUpdateChoice = c.skips;
    host.versions[1] = c.pluginVersion;
    Panel().choiceShown = 0;
    Arm(100.0f, 100.0f, 2.0f);
    Tick();
    EXPECT_EQ(Panel().choiceShown != 0, c.shown) << c.flags << " " << c.skips << " " << MString(c.pluginVersion).ToUtf8();
  }
}

TEST_F(ProgressPanelTest, UpdateChoiceRowsBelowTheFirstStayPut) {
  host.flags = 1024;
  Arm(100.0f, 100.0f, 2.0f);
  Tick();
  MUIPanelProgress& p = Panel();
  ASSERT_TRUE(p.choiceShown);
  const int32_t w = p.bounds.Width();
  const int32_t n = p.lineCount;
  EXPECT_EQ(p.bar->parent, nullptr);
  EXPECT_EQ(p.radios[0]->parent, &p);
  EXPECT_EQ(p.bodyText->bounds, MRect::FromEdges(97, 15 * n + 25, w - 20, 15 * n + 78));
  EXPECT_EQ(p.learnMoreLink->bounds, MRect::FromSize(97, (n + 3) * 15, w - 100, 40));
  EXPECT_EQ(p.radios[0]->bounds, MRect::FromSize(97, 15 * n + 83, 15, 15));
  EXPECT_EQ(p.radioLabels[0]->bounds, MRect::FromEdges(117, 98, w - 20, 116));
  EXPECT_EQ(p.radios[1]->bounds, MRect::FromSize(97, 122, 15, 15));
  EXPECT_EQ(p.radioLabels[2]->bounds, MRect::FromEdges(117, 146, w - 20, 164));

  window->HandleEvent(MInstallerWindow::kWindowEventId, MInstallerWindow::kResized, 0);
  EXPECT_EQ(window->targetRect.bottom, (n + 22) * 15);
}

struct OffsetCase {
  uint32_t locale;
  int32_t texts;
  int32_t labels[3];
};

TEST_F(ProgressPanelTest, UpdateChoiceOffsetsByLocaleKeepTheJapaneseAsymmetry) {
  const OffsetCase cases[] = {
      {1028, 3, {1, 1, 1}}, {2052, 3, {1, 1, 1}}, {1041, 3, {7, 1, 7}}, {1042, 0, {7, 7, 7}}, {1033, 0, {7, 7, 7}},
  };
  for (const OffsetCase& c : cases) {
    System().threadLocale = c.locale;
    // 7 marks a label the locale leaves alone.
    for (MTextArea* label : Panel().radioLabels) label->verticalOffset = 7;
    Panel().ShowUpdateChoice();
    EXPECT_EQ(Panel().headingText->verticalOffset, c.texts) << c.locale;
    EXPECT_EQ(Panel().bodyText->verticalOffset, c.texts) << c.locale;
    EXPECT_EQ(Panel().learnMoreLink->verticalOffset, c.texts) << c.locale;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Panel().radioLabels[i]->verticalOffset, c.labels[i]) << c.locale << " " << i;
  }
}

TEST_F(ProgressPanelTest, LeavingDeletesTheControlsItDetached) {
  host.flags = 1024;
  Arm(100.0f, 100.0f, 2.0f);
  Tick();
  Panel().HandleEvent(MInstallerWindow::kWindowEventId, MInstallerWindow::kHidden, 0);
  EXPECT_EQ(Panel().titleText, nullptr);
  EXPECT_EQ(Panel().bar, nullptr);
  EXPECT_EQ(Panel().radios[1], nullptr);
  EXPECT_EQ(Panel().headingText, nullptr);
  EXPECT_NE(Panel().logo, nullptr);
  Tick(2);  // a late tick still reaches the callback safely
  EXPECT_EQ(codes.back(), 1);
}

}  // namespace
}  // namespace SASM
