#include "ui/MTooltipArea.h"

#include <gtest/gtest.h>

#include "tests/native/WidgetTestWindow.h"

namespace SASM {
namespace {

using Calls = std::vector<std::string>;

class MTooltipAreaTest : public WidgetTestWindow {};

TEST_F(MTooltipAreaTest, TheToolComesAndGoesOnlyWithAChangeOfStateAndFollowsTheBoundsWhileActive) {
  MTooltipArea tip(window, nullptr);
  tip.SetText(MString(u"Tick the box above first."));
  tip.bounds = MRect::FromSize(0, 0, 140, 33);
  tip.Layout();  // inactive: the rectangle is not sent
  tip.SetActive(false);
  tip.SetActive(true);
  tip.SetActive(true);
  tip.bounds = MRect::FromSize(0, 0, 150, 33);
  tip.Layout();
  tip.SetActive(false);
  tip.SetActive(false);
  EXPECT_EQ(System().tooltipCalls, (Calls{"create", "text Tick the box above first.", "add 0,0,140,33",
                                          "move 0,0,150,33", "delete"}));
}

}  // namespace
}  // namespace SASM
