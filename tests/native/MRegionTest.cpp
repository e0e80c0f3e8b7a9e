#include <gtest/gtest.h>

#include <vector>

#include "tests/fakes/FakeWindowSystem.h"
#include "tests/fakes/RecordingDrawSurface.h"
#include "ui/MPlainWindow.h"
#include "ui/MSkinnedSection.h"
#include "ui/MorphUI.h"

namespace SASM {
namespace {

void* const kSkin = reinterpret_cast<void*>(uintptr_t{0x5151});

class MRegionTest : public ::testing::Test {
 protected:
  MRegionTest() : ui(nullptr, nullptr, std::make_unique<FakeWindowSystem>()), window(&ui) {
    host = static_cast<FakeWindowSystem&>(ui.System()).lastHost;
  }

  MSkinnedSection* Make(MRect bounds, MSourceRect source = {0, 0, 10, 10}) {
    regions.push_back(std::make_unique<MSkinnedSection>(kSkin, source));
    regions.back()->bounds = bounds;
    return regions.back().get();
  }

  std::vector<RecordingDrawSurface::Call> Draw(MRegion* first, MRect dirty) {
    RecordingDrawSurface surface;
    MRegion::DrawChain(first, dirty, MPoint{}, surface);
    return surface.calls;
  }

  MorphUI ui;
  MPlainWindow window;
  FakeWindowHost* host;
  std::vector<std::unique_ptr<MSkinnedSection>> regions;
};

std::vector<MRegion*> Children(MRegion* parent) {
  std::vector<MRegion*> out;
  for (MRegion* r = parent->firstChild; r; r = r->Next()) out.push_back(r);
  return out;
}

TEST_F(MRegionTest, AttachAppendsOnceAndKeepsAListedChildWhereItIs) {
  MRegion* parent = Make({0, 0, 100, 100});
  MRegion* a = Make({1, 1, 2, 2});
  MRegion* b = Make({1, 1, 2, 2});
  MRegion* c = Make({1, 1, 2, 2});
  window.AttachRegion(parent);
  parent->AttachChild(a);
  parent->AttachChild(b);
  parent->AttachChild(c);
  parent->AttachChild(a);  // in the middle of the list
  parent->AttachChild(c);  // at its end
  EXPECT_EQ(Children(parent), (std::vector<MRegion*>{a, b, c}));
  EXPECT_EQ(c->parent, parent);
  EXPECT_EQ(c->owner, &window);
}

TEST_F(MRegionTest, DetachingTheFirstChildDropsItsSiblingsFromTheParentsView) {
  MRegion* parent = Make({0, 0, 100, 100});
  MRegion* a = Make({1, 1, 2, 2});
  MRegion* b = Make({1, 1, 2, 2});
  parent->AttachChild(a);
  parent->AttachChild(b);
  a->Detach();
  EXPECT_EQ(parent->firstChild, nullptr);
  EXPECT_EQ(b->parent, parent);

  // A later child leaves its list closed around the gap.
  MRegion* c = Make({1, 1, 2, 2});
  MRegion* d = Make({1, 1, 2, 2});
  MRegion* e = Make({1, 1, 2, 2});
  parent->AttachChild(c);
  parent->AttachChild(d);
  parent->AttachChild(e);
  d->Detach();
  EXPECT_EQ(Children(parent), (std::vector<MRegion*>{c, e}));
}

TEST_F(MRegionTest, NativeWindowFollowsAttachVisibilityMoveAndDetach) {
  MRegion* panel = Make({10, 20, 300, 200});
  MRegion* button = Make({5, 6, 45, 26});
  button->drawFlags |= MRegion::kNativeWindow;
  button->controlId = 100;
  window.AttachRegion(panel);
  panel->AttachChild(button);
  ASSERT_NE(button->nativeWindow, nullptr);
  auto& child = host->children[FakeWindowHost::Id(button->nativeWindow)];
  EXPECT_EQ(child.rect, (MRect{15, 26, 55, 46}));

  button->bounds.Offset(1, 1);
  button->SyncNativeWindow();
  EXPECT_EQ(child.rect, (MRect{16, 27, 56, 47}));

  window.SetFocusRegion(button, true);
  button->SetVisible(false);
  EXPECT_EQ(window.focusRegion, nullptr);
  EXPECT_FALSE(child.shown);
  button->SetVisible(true);
  EXPECT_TRUE(child.shown);

  window.SetFocusRegion(button, false);
  button->SetEnabled(false);
  EXPECT_EQ(window.focusRegion, nullptr);

  button->Detach();
  EXPECT_EQ(button->nativeWindow, nullptr);
  EXPECT_TRUE(host->children.empty());
}

TEST_F(MRegionTest, InvalidateAddsEveryAncestorsOffset) {
  MRegion* outer = Make({100, 50, 400, 300});
  MRegion* inner = Make({10, 10, 200, 200});
  MRegion* leaf = Make({1, 2, 11, 12});
  window.AttachRegion(outer);
  outer->AttachChild(inner);
  inner->AttachChild(leaf);
  leaf->Invalidate();
  ASSERT_FALSE(host->invalidated.empty());
  EXPECT_EQ(host->invalidated.back(), (MRect{111, 62, 121, 72}));
}

TEST_F(MRegionTest, ScaleRoundsTiesToEvenAndKeepsAtLeastOneSourcePixel) {
  // Source 3 wide over bounds 6 wide: each destination column is half a source column.
  MRegion* r = Make({0, 0, 6, 6}, {100, 200, 3, 3});
  // clip x 1 (0.5 -> 0), y 3 (1.5 -> 2), w 5 (2.5 -> 2), h 3 (1.5 -> 2)
  auto calls = Draw(r, {1, 3, 6, 6});
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].blit.source.x, 100);
  EXPECT_EQ(calls[0].blit.source.y, 201);  // 202 + 2 passes the end: pulled back by one
  EXPECT_EQ(calls[0].blit.source.width, 2);
  EXPECT_EQ(calls[0].blit.source.height, 2);

  calls = Draw(r, {5, 5, 6, 6});  // one pixel: 0.5 -> 0 becomes 1; x 2.5 -> 2
  EXPECT_EQ(calls[0].blit.source.width, 1);
  EXPECT_EQ(calls[0].blit.source.x, 102);
}

TEST_F(MRegionTest, StretchedMiddleNeverReadsPastItsSourceRectangle) {
  MRegion* middle = Make({0, 0, 50, 33}, {16, 77, 1, 33});
  auto calls = Draw(middle, {49, 0, 50, 33});  // last column: 0.98 rounds to 1, pulled back to 16
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].blit.source.x, 16);
  EXPECT_EQ(calls[0].blit.source.width, 1);
}

TEST_F(MRegionTest, DrawsParentsFirstLaterSiblingsOverEarlierAndSkipsHiddenBranches) {
  MRegion* root = Make({10, 10, 110, 110});
  MRegion* first = Make({5, 5, 15, 15});
  MRegion* hidden = Make({20, 20, 30, 30});
  MRegion* hiddenChild = Make({1, 1, 5, 5});
  MRegion* noDraw = Make({40, 40, 60, 60});
  MRegion* grandchild = Make({2, 3, 6, 7});
  root->AttachChild(first);
  root->AttachChild(hidden);
  hidden->AttachChild(hiddenChild);
  hidden->visible = 0;
  root->AttachChild(noDraw);
  noDraw->SetDrawMode(MRegion::kNoDraw);
  noDraw->AttachChild(grandchild);
  root->SetDrawMode(MRegion::kSolidFill);
  root->SetFillColour(0x123456);
  first->SetDrawMode(MRegion::kOpaqueStretch);

  auto calls = Draw(root, {0, 0, 200, 200});
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].kind, RecordingDrawSurface::Kind::kFill);
  EXPECT_EQ(calls[0].colour, 0x123456u);
  EXPECT_EQ(calls[1].kind, RecordingDrawSurface::Kind::kStretch);
  EXPECT_EQ(calls[1].blit.destination.x, 15);
  EXPECT_EQ(calls[2].kind, RecordingDrawSurface::Kind::kBlend);
  // Offset of root and noDraw, then relative to the dirty rectangle's corner.
  EXPECT_EQ(calls[2].blit.destination.x, 10 + 40 + 2);
  EXPECT_EQ(calls[2].blit.destination.y, 10 + 40 + 3);

  calls = Draw(root, {50, 50, 200, 200});
  ASSERT_EQ(calls.size(), 2u);  // the fill and the grandchild; first lies outside
  EXPECT_EQ(calls[1].blit.destination.x, 2);
}

TEST_F(MRegionTest, ARegionWithoutImageOrWithNegativeWidthDrawsNothing) {
  MRegion* empty = Make({0, 0, 10, 10});
  empty->image = nullptr;
  MRegion* negative = Make({30, 0, 20, 10});
  empty->next = negative;
  EXPECT_TRUE(Draw(empty, {0, 0, 100, 100}).empty());
  empty->next = nullptr;
}

struct HitLog {
  std::vector<std::pair<MRegion*, bool>> calls;
  MRegion* consumer = nullptr;
};

bool LogHit(MRegion* region, MWindow*, MPoint*, bool inside, uint32_t, void* context) {
  auto* log = static_cast<HitLog*>(context);
  log->calls.push_back({region, inside});
  return region == log->consumer;
}

TEST_F(MRegionTest, HitTestAsksChildrenFirstInListOrderWithStrictEdges) {
  HitLog log;
  MRegion* parent = Make({0, 0, 100, 100});
  MRegion* early = Make({10, 10, 50, 50});
  MRegion* late = Make({10, 10, 50, 50});  // drawn over early, asked after it
  parent->AttachChild(early);
  parent->AttachChild(late);
  for (MRegion* r : {parent, early, late}) {
    r->handler = LogHit;
    r->handlerContext = &log;
  }
  log.consumer = late;
  EXPECT_TRUE(parent->HitTest({20, 20}, 513, false));
  ASSERT_EQ(log.calls.size(), 2u);
  EXPECT_EQ(log.calls[0].first, early);
  EXPECT_EQ(log.calls[1].first, late);

  // x 10 is early's left edge: outside, so only the parent answers.
  log.calls.clear();
  log.consumer = nullptr;
  EXPECT_FALSE(parent->HitTest({10, 20}, 513, false));
  ASSERT_EQ(log.calls.size(), 1u);
  EXPECT_EQ(log.calls[0].first, parent);

  // Forced, outside regions are asked too and told they are outside.
  log.calls.clear();
  EXPECT_FALSE(early->HitTest({-5, -5}, 512, true));
  ASSERT_EQ(log.calls.size(), 1u);
  EXPECT_FALSE(log.calls[0].second);

  log.calls.clear();
  parent->visible = 0;
  EXPECT_FALSE(parent->HitTest({20, 20}, 513, true));
  EXPECT_TRUE(log.calls.empty());
}

}  // namespace
}  // namespace SASM
