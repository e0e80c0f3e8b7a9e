#include "ui/panels/MUIPanelAutoUpdate.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerPanelWorld.h"

namespace SASM {
namespace {

class AutoUpdatePanelTest : public InstallerPanelWorld {
 protected:
  void OpenUpdate() { OpenPanel(3); }
  void Data(std::initializer_list<std::pair<std::u16string, std::u16string>> entries) {
    host.updateDialogDataAnswers = true;
    host.updateDialogData = entries;
  }
  MUIPanelAutoUpdate& Panel() { return *window->autoUpdatePanel; }
};

TEST_F(AutoUpdatePanelTest, FailedDialogDataGivesTheDefaultSizeAndText) {
  OpenUpdate();
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 500, 270));
  EXPECT_EQ(Text(Panel().bodyText), "<26>");
  EXPECT_TRUE(fakeHost->shown);
  EXPECT_TRUE(host.autoUpdateChoices.empty());
  EXPECT_EQ(fakeHost->title, u"<33>");
  EXPECT_EQ(window->leftButton->bounds.Width(), 200);
  EXPECT_TRUE(window->leftButton->visible);
}

TEST_F(AutoUpdatePanelTest, SizeGivesTheWidthAndASecondValueTheHeight) {
  Data({{u"message", u"A fix is ready."}, {u"size", u"600"}});
  OpenUpdate();
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 600, 270));
  EXPECT_EQ(Text(Panel().bodyText), "A fix is ready.");
  EXPECT_TRUE(host.autoUpdateChoices.empty()) << "no mode, no choice";

  Data({{u"size", u"640"}, {u"size", u"320"}});
  window->DeleteTransientPanels();
  OpenUpdate();
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 640, 320));
}

TEST_F(AutoUpdatePanelTest, ModeValuesOtherThanOneAndTwoStoreZero) {
  const std::pair<const char16_t*, int32_t> cases[] = {{u"1", 1}, {u"2", 2}, {u"7", 0}, {u"", 0}};
  for (const auto& [value, stored] : cases) {
    host.autoUpdateChoices.clear();
    Data({{u"autoUpdateMode", value}});
    window->DeleteTransientPanels();
    OpenUpdate();
    EXPECT_EQ(host.autoUpdateChoices, (std::vector<int32_t>{stored})) << MString(value).ToUtf8();
  }
}

TEST_F(AutoUpdatePanelTest, SourceTwelveRunsHiddenWithChoiceZero) {
  host.installSource = 12;
  Data({{u"autoUpdateMode", u"2"}, {u"size", u"640"}});
  OpenUpdate();
  EXPECT_FALSE(fakeHost->shown);
  EXPECT_EQ(host.autoUpdateChoices, (std::vector<int32_t>{0}));
  EXPECT_EQ(NotifiedCodes(), (std::vector<int32_t>{4}));
  EXPECT_NE(window->rect.right, 640);
}

TEST_F(AutoUpdatePanelTest, SkippedChoiceHidesTheLeftButton) {
  host.skipsUpdateChoice = true;
  OpenUpdate();
  EXPECT_FALSE(window->leftButton->visible);
}

TEST_F(AutoUpdatePanelTest, RightButtonAsksForTheUpdateOrInDownloadModeOpensThePageOfTheKindAndEnds) {
  OpenUpdate();
  notes.clear();
  Click(MInstallerWindow::kRightButtonId);
  EXPECT_EQ(NotifiedCodes(), (std::vector<int32_t>{4}));
  EXPECT_TRUE(panelShim.opened.empty());

  host.sessionMode = 2;
  const std::pair<uint32_t, const char*> cases[] = {
      {8 | 16, "activex"}, {16 | 32768, "plugin"}, {32768, "ppapi"}, {0, ""}};
  for (const auto& [mask, word] : cases) {
    productMask = mask;
    panelShim.opened.clear();
    OpenUpdate();
    Click(MInstallerWindow::kRightButtonId);
    EXPECT_EQ(panelShim.opened, (std::vector<std::string>{std::string("https://get.lumen.example/lumenplayer/update/") + word}));
    EXPECT_EQ(window->autoUpdatePanel, nullptr);
    EXPECT_EQ(window->failurePanel, nullptr);
  }
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{0, 0, 0, 0}));
}

TEST_F(AutoUpdatePanelTest, TextsMoveDownForTheEastAsianLocalesKoreanIncluded) {
  for (uint32_t locale : {1028u, 1041u, 1042u, 2052u, 1033u}) {
    System().threadLocale = locale;
    window->DeleteTransientPanels();
    OpenUpdate();
    const int32_t expected = locale == 1033 ? 0 : 3;
    EXPECT_EQ(Panel().headerText->verticalOffset, expected) << locale;
    EXPECT_EQ(Panel().bodyText->verticalOffset, expected) << locale;
  }
}

}  // namespace
}  // namespace SASM
