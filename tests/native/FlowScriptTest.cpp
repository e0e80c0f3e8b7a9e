#include "host/FlowScript.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

using Action = FlowScript::Action;

TEST(FlowScript, StepsAreWordsJoinedByCommasWithPausesAndStages) {
  FlowScript script;
  ASSERT_TRUE(script.Parse(u"right,tick,,wait=250,await=failure,left,end"));
  ASSERT_EQ(script.steps.size(), 6u) << "an empty step is skipped";
  EXPECT_EQ(script.steps[0].action, Action::kRight);
  EXPECT_EQ(script.steps[2].action, Action::kWait);
  EXPECT_EQ(script.steps[2].milliseconds, 250u);
  EXPECT_EQ(script.steps[3].action, Action::kAwait);
  EXPECT_EQ(script.steps[3].stage, "failure");
  EXPECT_EQ(script.steps[4].word, "left");
  for (const char16_t* bad : {u"tick,jump", u"wait=", u"wait=5s", u"wait=99999999", u"await="}) {
    FlowScript other;
    EXPECT_FALSE(other.Parse(bad)) << std::u16string(bad).size();
    EXPECT_EQ(other.error.rfind("unknown step in the script: ", 0), 0u);
  }
}

TEST(FlowScript, EachModesOwnFlowParsesAndAHiddenUpdateOnlyWaits) {
  for (auto mode : {HostOptions::Mode::Install, HostOptions::Mode::Uninstall, HostOptions::Mode::Maintain,
                    HostOptions::Mode::Update}) {
    FlowScript script;
    EXPECT_TRUE(script.Parse(FlowScript::DefaultFor(mode, 0)));
  }
  EXPECT_EQ(FlowScript::DefaultFor(HostOptions::Mode::Install, 0), u"right,tick,right,done")
      << "INSTALL is tried once before the licence is accepted";
  EXPECT_EQ(FlowScript::DefaultFor(HostOptions::Mode::Update, 12), u"end");
}

TEST(FlowScript, ClicksAimAtTheBarsButtonsThePanelsBoxAndTheMaintenanceButtons) {
  // A 450 by 345 client: the bar from 277, its buttons 18 below; the panel 279 high.
  EXPECT_EQ(FlowScript::Target(Action::kRight, 450, 345), MRect::FromSize(294, 295, 140, 33));
  EXPECT_EQ(FlowScript::Target(Action::kDone, 500, 270), MRect::FromSize(344, 220, 140, 33));
  EXPECT_EQ(FlowScript::Target(Action::kLeft, 450, 345), MRect::FromSize(94, 295, 140, 33));
  EXPECT_EQ(FlowScript::Target(Action::kTick, 450, 345), MRect::FromSize(96, 230, 15, 15));
  EXPECT_EQ(FlowScript::Target(Action::kLabel, 450, 345).top, 229);
  EXPECT_EQ(FlowScript::Target(Action::kUninstall, 450, 345), MRect::FromSize(19, 69, 140, 33));
  EXPECT_EQ(FlowScript::Target(Action::kReinstall, 450, 345), MRect::FromSize(19, 19, 140, 33));
  EXPECT_TRUE(FlowScript::Target(Action::kAwait, 450, 345).IsEmpty());
}

}  // namespace
