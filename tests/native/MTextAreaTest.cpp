#include "ui/MTextArea.h"

#include <gtest/gtest.h>

#include "tests/native/WidgetTestWindow.h"
#include "ui/MHTMLLink.h"
#include "ui/MNCPLink.h"

namespace SASM {
namespace {

using Lines = std::vector<std::string>;

class MTextAreaTest : public WidgetTestWindow {
 protected:
  std::unique_ptr<MTextArea> Area(MRect bounds, const char16_t* text, bool markup = true) {
    auto area = std::make_unique<MTextArea>(window, 16, markup, false);
    canvas = System().lastCanvas;
    area->bounds = bounds;
    area->SetText(MString(text));
    return area;
  }
  std::vector<MHTMLLink*> Links(MTextArea& area) {
    std::vector<MHTMLLink*> links;
    for (MRegion* r = area.firstChild; r; r = r->Next()) links.push_back(static_cast<MHTMLLink*>(r));
    return links;
  }
  FakeTextCanvas* canvas = nullptr;
};

TEST_F(MTextAreaTest, TheBitmapStartsAt256By128GrowsInStepsOf128AndNeverShrinks) {
  auto area = Area(MRect::FromSize(0, 0, 300, 10), u"x");
  EXPECT_EQ(canvas->resizes, (std::vector<std::pair<int32_t, int32_t>>{{256, 128}}));
  area->Layout();
  EXPECT_EQ(canvas->resizes.back(), (std::pair<int32_t, int32_t>{384, 128}));
  area->bounds = MRect::FromSize(0, 0, 256, 128);  // exactly the size: no growth
  area->Layout();
  EXPECT_EQ(canvas->resizes.size(), 2u);
  area->bounds = MRect::FromSize(0, 0, 100, 129);
  area->Layout();
  EXPECT_EQ(canvas->resizes.back(), (std::pair<int32_t, int32_t>{384, 256}));
}

TEST_F(MTextAreaTest, RenderDrawsOnlyAfterLayoutAndTheLabelKeepsTheMarkup) {
  auto area = Area(MRect::FromSize(5, 5, 200, 60), u"one <strong>two</strong><br>three");
  EXPECT_TRUE(canvas->draws.empty());
  EXPECT_EQ(area->Render(), 2);
  EXPECT_EQ(canvas->draws, (Lines{"one @0,0", "two@40,0", "three@0,16"}));
  EXPECT_EQ(area->label.ToUtf8(), "one <strong>two</strong><br>three");
  EXPECT_FALSE(fakeHost->invalidated.empty());
  // The draws became premultiplied alpha with a shadow under each white start pixel.
  EXPECT_EQ(canvas->At(0, 0), 0x00FFFFFFu);  // top row left as drawn
  EXPECT_EQ(canvas->At(0, 17) >> 24, 0xFDu);
}

TEST_F(MTextAreaTest, EmptyTextDrawsNothingAndLeavesTheLabel) {
  auto area = Area(MRect::FromSize(0, 0, 100, 20), u"");
  area->label = MString(u"before");
  EXPECT_EQ(area->Render(), 1);
  EXPECT_EQ(canvas->clears, 1);
  EXPECT_EQ(area->label.ToUtf8(), "before");
}

TEST_F(MTextAreaTest, LinkRunsBecomeLinkChildrenWithAWhiteBottomRow) {
  auto area = Area(MRect::FromSize(0, 0, 80, 60),
                   u"go <a href=\"http://h.example/\">there now</a> <ncp>panel</ncp>");
  area->verticalOffset = 2;
  EXPECT_EQ(area->Render(), 3);
  std::vector<MHTMLLink*> links = Links(*area);
  ASSERT_EQ(links.size(), 4u);  // "panel" is cut: "pane" ends the second line
  EXPECT_EQ(links[0]->bounds, MRect::FromSize(30, 2, 50, 16));
  EXPECT_EQ(links[1]->bounds, MRect::FromSize(0, 18, 30, 16));
  EXPECT_EQ(links[0]->url.ToUtf8(), "http://h.example/");
  EXPECT_NE(dynamic_cast<MNCPLink*>(links[2]), nullptr);
  EXPECT_EQ(links[3]->bounds, MRect::FromSize(0, 34, 10, 16));
  EXPECT_EQ(links[0]->underline.bounds, MRect::FromSize(0, 15, 50, 1));
  EXPECT_EQ(canvas->whiteFills[0], MRect::FromEdges(30, 17, 80, 18));
  EXPECT_EQ(canvas->colours[1], area->linkTextColor);

  // A new layout puts new links in view; the old ones stay alive with the area.
  area->SetText(MString(u"<a href='x'>one</a>"));
  area->Render();
  ASSERT_EQ(Links(*area).size(), 1u);
  EXPECT_EQ(links[0]->parent, nullptr);
  EXPECT_EQ(links[1]->parent, area.get());  // out of view but not detached
}

TEST_F(MTextAreaTest, HoveredLinkOfAnOldLayoutLeavesNoCaptureBehindWhenTheAreaGoes) {
  {
    auto area = Area(MRect::FromSize(0, 0, 200, 40), u"a <a href='u'>b</a> c <a href='v'>d</a>");
    window->AttachRegion(area.get());
    area->Render();
    Mouse(MWindow::kMouseMove, 65, 5);  // over the second link
    ASSERT_EQ(window->capturedRegion, Links(*area)[1]);
    area->Render();
    EXPECT_NE(window->capturedRegion, nullptr);
    area->Detach();
  }
  EXPECT_EQ(window->capturedRegion, nullptr);
}

TEST_F(MTextAreaTest, ZeroSizedNarrowAndHugeAreasEnd) {
  auto zero = Area(MRect{}, u"text");
  EXPECT_EQ(zero->Render(), 1);
  EXPECT_TRUE(canvas->draws.empty());
  auto narrow = Area(MRect::FromSize(0, 0, 9, 50), u"ab cd");
  EXPECT_EQ(narrow->Render(), 1);
  std::u16string big;
  for (int i = 0; i < 2000; ++i) big += u"word ";
  auto huge = Area(MRect::FromSize(0, 0, 100, 20), big.c_str(), false);
  EXPECT_EQ(huge->Render(), 1000);
  huge->alpha = 128;
  huge->SetText(MString(u"x"));
  huge->Render();
  EXPECT_EQ(canvas->At(0, 1) >> 24, 127u);  // the shadow at half strength
}

}  // namespace
}  // namespace SASM
