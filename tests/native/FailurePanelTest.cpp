#include "ui/panels/MUIPanelFailure.h"

#include <gtest/gtest.h>

#include "tests/native/InstallerPanelWorld.h"

namespace SASM {
namespace {

class FailurePanelTest : public InstallerPanelWorld {
 protected:
  MUIPanelFailure& Panel() { return *window->failurePanel; }
  void ShowError() { window->HandleEvent(MInstallerWindow::kFailureEventId, MInstallerWindow::kShowError, 0); }
  std::string Formatted(int32_t index) {
    MString text, out;
    host.log.Text(text, index);
    host.log.Format(out, &host, host.log.Severity(index), host.log.Code(index), text, 0);
    return out.ToUtf8();
  }
};

TEST_F(FailurePanelTest, ShowsTheLastSeriousEntryAndOnlyQuit) {
  host.log.Add(3, 1015, MString(u"C:\\first.dll"));
  host.log.Add(2, 1021, MString(u"C:\\second.dll"));
  host.log.Add(1, 18, MString(u"later detail"));
  ShowError();
  ASSERT_EQ(window->ActivePanel(), window->failurePanel);
  EXPECT_EQ(Text(Panel().messageText), Formatted(1));
  EXPECT_EQ(Text(Panel().headerText), "<8>");
  EXPECT_TRUE(window->leftButton->visible);
  EXPECT_FALSE(window->rightButton->visible);
  EXPECT_TRUE(window->rightButton->enabled) << "enabled, though it stays hidden";
  EXPECT_EQ(window->rect, MRect::FromSize(0, 0, 450, 345));

  Click(MInstallerWindow::kLeftButtonId);
  EXPECT_EQ(QuitCodes(), (std::vector<int32_t>{-1}));
}

TEST_F(FailurePanelTest, UninstallerCodesChangeHeaderAndTitleInstallerCodesOnlyTheHeader) {
  const struct {
    int32_t code;
    const char* header;
    const char16_t* title;  // empty: left as it was
  } cases[] = {{1047, "<75>", u"<30>"}, {1048, "<75>", u"<30>"}, {1040, "<76>", u""}, {1044, "<76>", u""}};
  for (const auto& c : cases) {
    host.log.Add(2, c.code, MString(u"detail"));
    fakeHost->title.clear();
    ShowError();
    EXPECT_EQ(Text(Panel().headerText), c.header) << c.code;
    EXPECT_EQ(fakeHost->title, c.title) << c.code;
  }
}

TEST_F(FailurePanelTest, WithoutASeriousEntryTheFirstIsShown) {
  host.log.Add(0, 1048, MString(u"first"));
  host.log.Add(1, 18, MString(u"second"));
  ShowError();
  EXPECT_EQ(Text(Panel().messageText), Formatted(0));
  EXPECT_EQ(Text(Panel().headerText), "<75>");
}

TEST_F(FailurePanelTest, EmptyLogKeepsTheNoInformationText) {
  ShowError();
  EXPECT_EQ(Text(Panel().messageText), "<51>");
}

}  // namespace
}  // namespace SASM
