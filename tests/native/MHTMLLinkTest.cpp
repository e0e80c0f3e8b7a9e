#include "ui/MHTMLLink.h"

#include <gtest/gtest.h>

#include "tests/native/WidgetTestWindow.h"
#include "ui/MTextArea.h"

namespace SASM {
namespace {

// A text area at (10, 10) whose only run is a link: with the fixed-width
// canvas, "more" covers [10, 10, 50, 26] in the window.
class MHTMLLinkTest : public WidgetTestWindow {
 protected:
  MHTMLLink* Link(const char16_t* markup) {
    if (area) area->Detach();
    area = std::make_unique<MTextArea>(window, 16, true, false);
    area->bounds = MRect::FromSize(10, 10, 200, 40);
    area->SetText(MString(markup));
    window->AttachRegion(area.get());
    area->Layout();
    return static_cast<MHTMLLink*>(area->firstChild);
  }
  uint32_t Colour(MHTMLLink* link) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(link->underline.image));
  }
  std::unique_ptr<MTextArea> area;
};

TEST_F(MHTMLLinkTest, HoverCapturesWithTheHandAndLeavingGivesItBack) {
  MHTMLLink* link = Link(u"<a href=\"https://lumen.example/more\">more</a>");
  ASSERT_NE(link, nullptr);
  Mouse(MWindow::kMouseMove, 20, 15);
  EXPECT_EQ(window->capturedRegion, link);
  EXPECT_EQ(fakeHost->cursor, MHTMLLink::kHandCursor);
  EXPECT_EQ(Colour(link), area->linkHoverColor);
  const size_t invalidations = fakeHost->invalidated.size();
  Mouse(MWindow::kMouseMove, 120, 15);
  EXPECT_EQ(window->capturedRegion, nullptr);
  EXPECT_EQ(fakeHost->cursor, MHTMLLink::kArrowCursor);
  EXPECT_EQ(Colour(link), area->linkNormalColor);
  // The underline is repainted where it lies in the window.
  ASSERT_GT(fakeHost->invalidated.size(), invalidations);
  EXPECT_EQ(fakeHost->invalidated.back(), MRect::FromSize(10, 25, 40, 1));
}

TEST_F(MHTMLLinkTest, AClickInsideOpensTheAddressThroughTheShimAndDraggingOutCancels) {
  MHTMLLink* link = Link(u"<a href=\"https://lumen.example/more\">more</a>");
  Mouse(MWindow::kMouseMove, 20, 15);
  Mouse(MWindow::kButtonDown, 20, 15);
  EXPECT_EQ(Colour(link), area->linkNormalColor);  // pressed inside looks normal, outside hovered
  Mouse(MWindow::kMouseMove, 120, 15);
  EXPECT_EQ(link->state, MHTMLLink::kPressedOutside);
  EXPECT_EQ(Colour(link), area->linkHoverColor);
  Mouse(MWindow::kMouseMove, 20, 15);
  Mouse(MWindow::kButtonUp, 20, 15);
  EXPECT_EQ(link->state, MHTMLLink::kHover);
  EXPECT_EQ(shim.opened, (std::vector<std::string>{"https://lumen.example/more"}));
  EXPECT_EQ(shim.windows[0], window->handle);

  // Pressed, dragged out and released there: nothing opens, the capture goes back.
  Mouse(MWindow::kButtonDown, 20, 15);
  Mouse(MWindow::kMouseMove, 120, 15);
  Mouse(MWindow::kButtonUp, 120, 15);
  EXPECT_EQ(link->state, MHTMLLink::kIdle);
  EXPECT_EQ(window->capturedRegion, nullptr);
  EXPECT_EQ(shim.opened.size(), 1u);
}

TEST_F(MHTMLLinkTest, ASettingsLinkOpensTheAppletWithoutAnAddress) {
  MHTMLLink* link = Link(u"<ncp>settings</ncp>");
  ASSERT_NE(link, nullptr);
  Mouse(MWindow::kButtonDown, 20, 15);
  Mouse(MWindow::kButtonUp, 20, 15);
  EXPECT_EQ(shim.opened, (std::vector<std::string>{"<applet>"}));
  // An address link without its address is plain text: no region.
  EXPECT_EQ(Link(u"<a href=''>plain</a>"), nullptr);
}

}  // namespace
}  // namespace SASM
