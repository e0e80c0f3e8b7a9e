#include <gtest/gtest.h>

#include "tests/fakes/RecordingDrawSurface.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Section.h"

namespace SASM {
namespace {

void* const kSkin = reinterpret_cast<void*>(uintptr_t{0x5151});

MScale3Data ButtonLook(int32_t x) {
  MScale3Data d;
  d.image = kSkin;
  d.left = {x, 77, 3, 33};
  d.middle = {x + 3, 77, 1, 33};
  d.right = {x + 4, 77, 3, 33};
  return d;
}

TEST(MScale3Section, LaysOutCapsAndStretchedMiddleAndTakesLookAndAlpha) {
  MScale3Data normal = ButtonLook(13);
  MScale3Data hover = ButtonLook(20);
  hover.drawMode = 1;
  MScale3Section section(&normal, nullptr);
  section.bounds = MRect::FromSize(94, 18, 140, 33);
  section.alpha = 128;
  section.Layout();
  EXPECT_EQ(section.middle->bounds, (MRect{3, 0, 137, 33}));
  EXPECT_EQ(section.right->bounds, (MRect{137, 0, 140, 33}));
  EXPECT_EQ(section.right->alpha, 128);

  section.data = &hover;
  section.Layout();
  EXPECT_EQ(section.middle->sourceRect.x, 23);
  EXPECT_EQ(section.right->DrawMode(), 1);
}

TEST(MScale3Section, NarrowerThanItsCapsLeavesTheMiddleEmptyAndNullDataMakesNothing) {
  MScale3Data look = ButtonLook(13);
  MScale3Section section(&look, nullptr);
  section.bounds = MRect::FromSize(0, 0, 4, 33);
  section.Layout();
  EXPECT_EQ(section.middle->bounds.Width(), -2);
  RecordingDrawSurface surface;
  MRegion::DrawChain(&section, {0, 0, 100, 100}, {}, surface);
  for (const auto& call : surface.calls) EXPECT_NE(call.blit.source.x, 16);  // the middle never draws
  EXPECT_EQ(surface.calls.size(), 2u);

  MScale3Section none(nullptr, nullptr);
  none.bounds = MRect::FromSize(0, 0, 40, 33);
  none.Layout();
  EXPECT_EQ(none.firstChild, nullptr);
}

TEST(MScale9Section, BuildsRowsFromPackedPiecesAndStretchesTheMiddleRow) {
  MScale9Data ring = MScale9Data::Make(13, 44, 7, 1, 7, 7, 1, 7, kSkin, 2);
  EXPECT_EQ(ring.rows[2].right.x, 21);
  EXPECT_EQ(ring.rows[2].right.y, 52);

  MScale9Section section(&ring, nullptr);
  section.bounds = MRect::FromSize(230, 192, 25, 25);
  section.alpha = 200;
  section.Layout();
  EXPECT_EQ(section.middle->bounds, (MRect{0, 7, 25, 18}));
  EXPECT_EQ(section.bottom->right->bounds, (MRect{18, 0, 25, 7}));
  EXPECT_EQ(section.middle->middle->alpha, 200);
}

}  // namespace
}  // namespace SASM
