#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "host/ReferenceHost.h"
#include "tests/fakes/FakeWindowSystem.h"
#include "tests/fakes/RecordingDrawSurface.h"
#include "ui/MPlainWindow.h"
#include "ui/MSkinnedSection.h"
#include "ui/MorphUI.h"

namespace SASM {
namespace {

using Event = std::tuple<int32_t, int32_t, intptr_t>;

class MWindowTest : public ::testing::Test {
 protected:
  MWindowTest() : ui(nullptr, nullptr, std::make_unique<FakeWindowSystem>()) {
    window = new MPlainWindow(&ui);
    ui.window = window;
    host = static_cast<FakeWindowSystem&>(ui.System()).lastHost;
    window->SetListener(
        [](MPlainWindow*, int32_t id, int32_t message, intptr_t param, void* context) {
          static_cast<std::vector<Event>*>(context)->push_back({id, message, param});
        },
        &events);
  }

  MSkinnedSection* Make(MRect bounds, int32_t controlId = 0, bool native = false) {
    regions.push_back(std::make_unique<MSkinnedSection>());
    MSkinnedSection* r = regions.back().get();
    r->bounds = bounds;
    r->controlId = controlId;
    if (native) r->drawFlags |= MRegion::kNativeWindow;
    return r;
  }

  std::vector<std::unique_ptr<MSkinnedSection>> regions;  // outlive the window's use of them
  MorphUI ui;
  MPlainWindow* window;
  FakeWindowHost* host;
  std::vector<Event> events;
};

TEST_F(MWindowTest, AnimationClosesHalfTheDistancePerTickAndOnePixelAtOnce) {
  window->rect = {0, 0, 100, 100};
  window->ApplyRect(false, true);
  EXPECT_EQ(events.back(), (Event{2, 2, 0}));
  window->targetRect = {0, 0, 200, 99};  // width 100 further, height -1
  std::vector<MRect> steps;
  for (int i = 0; i < 10; ++i) {
    window->OnTimer();
    steps.push_back(window->rect);
  }
  EXPECT_EQ(steps[0], (MRect{0, 0, 150, 99}));  // -1 arrives at once
  EXPECT_EQ(steps[6].right, 199);
  EXPECT_EQ(steps[7].right, 200);  // the last pixel in one tick
  // A moving tick notifies a resize, and every tick notifies the tick.
  EXPECT_EQ(std::vector<Event>(events.begin() + 1, events.begin() + 3), (std::vector<Event>{{2, 2, 0}, {2, 4, 0}}));
  EXPECT_EQ(events.back(), (Event{2, 4, 0}));

  window->targetRect = {0, 0, 200, 345};
  window->OnTimer();
  EXPECT_EQ(window->rect, (MRect{0, 0, 200, 222}));  // a height-only change: width step 0
}

bool CountTimer(MRegion*, MWindow*, MPoint*, bool inside, uint32_t message, void* context) {
  EXPECT_FALSE(inside);
  EXPECT_EQ(message, 275u);
  ++*static_cast<int*>(context);
  return true;
}

TEST_F(MWindowTest, TimerReachesEveryHandlerIncludingHiddenRegionsAndChildren) {
  int ticks = 0;
  MRegion* a = Make({0, 0, 10, 10});
  MRegion* b = Make({0, 0, 10, 10});
  MRegion* child = Make({0, 0, 5, 5});
  window->AttachRegion(a);
  window->AttachRegion(b);
  b->AttachChild(child);
  b->visible = 0;
  for (MRegion* r : {a, b, child}) {
    r->handler = CountTimer;
    r->handlerContext = &ticks;
  }
  window->OnTimer();
  EXPECT_EQ(ticks, 3);
}

struct MouseLog {
  std::vector<std::tuple<MRegion*, MPoint, bool>> calls;
  bool consume = true;
};

bool LogMouse(MRegion* region, MWindow*, MPoint* point, bool inside, uint32_t, void* context) {
  auto* log = static_cast<MouseLog*>(context);
  log->calls.push_back({region, *point, inside});
  return log->consume;
}

uint32_t Point(uint32_t x, uint32_t y) { return x | (y << 16); }

TEST_F(MWindowTest, MouseGoesToTheCapturedRegionFirstWithForceThenToTheRegions) {
  MouseLog log;
  MRegion* panel = Make({100, 100, 300, 300});
  MRegion* button = Make({10, 20, 60, 40});
  MRegion* other = Make({0, 0, 50, 50});
  window->AttachRegion(panel);
  window->AttachRegion(other);
  panel->AttachChild(button);
  for (MRegion* r : {button, other}) {
    r->handler = LogMouse;
    r->handlerContext = &log;
  }
  window->OnMouse(MWindow::kMouseMove, Point(120, 130));
  ASSERT_EQ(log.calls.size(), 1u);
  EXPECT_EQ(std::get<0>(log.calls[0]), button);
  EXPECT_EQ(std::get<1>(log.calls[0]).x, 10);

  window->CaptureRegion(button);
  log.calls.clear();
  window->OnMouse(MWindow::kMouseMove, Point(5, 5));  // far outside the button
  ASSERT_EQ(log.calls.size(), 1u);
  EXPECT_EQ(std::get<0>(log.calls[0]), button);
  EXPECT_EQ(std::get<1>(log.calls[0]).x, -105);
  EXPECT_FALSE(std::get<2>(log.calls[0]));

  // Not consumed by the captured region: the regions are asked in turn.
  log.consume = false;
  log.calls.clear();
  window->OnMouse(MWindow::kMouseMove, Point(5, 5));
  ASSERT_EQ(log.calls.size(), 2u);
  EXPECT_EQ(std::get<0>(log.calls[1]), other);
}

TEST_F(MWindowTest, PressOnEmptySpaceClearsTheFocusRing) {
  MRegion* button = Make({10, 10, 50, 50}, 100, true);
  window->AttachRegion(button);
  window->SetFocusRegion(button, true);
  window->OnMouse(MWindow::kButtonUp, Point(200, 200));
  EXPECT_EQ(window->focusRegion, button);
  window->OnMouse(MWindow::kButtonDown, Point(200, 200));
  EXPECT_EQ(window->focusRegion, nullptr);
}

TEST_F(MWindowTest, FocusWalkSkipsUnfocusableChildrenWrapsAndKeepsTheTabAsymmetry) {
  MRegion* a = Make({0, 0, 10, 10}, 100, true);
  MRegion* label = Make({0, 0, 10, 10}, 0, true);  // id 0: never focusable
  MRegion* b = Make({0, 0, 10, 10}, 101, true);
  MRegion* c = Make({0, 0, 10, 10}, 102, true);
  for (MRegion* r : {a, label, b, c}) window->AttachRegion(r);
  c->enabled = 0;

  window->OnChildTab(a->nativeWindow, false);
  EXPECT_EQ(window->focusRegion, b);
  window->OnChildTab(b->nativeWindow, false);  // c disabled, wraps to a
  EXPECT_EQ(window->focusRegion, a);
  window->OnChildTab(a->nativeWindow, true);  // backwards wraps to the last, skips c
  EXPECT_EQ(window->focusRegion, b);

  // From the window, Tab without Shift walks backwards from the first child.
  window->OnWindowTab(false);
  EXPECT_EQ(window->focusRegion, b);
  window->OnWindowTab(true);
  EXPECT_EQ(window->focusRegion, b);
  b->visible = 0;
  window->OnWindowTab(true);
  EXPECT_EQ(window->focusRegion, a);  // nothing else: back to the start, which can take it

  a->enabled = 0;
  EXPECT_EQ(window->NextFocus(a->nativeWindow, true), nullptr);
}

TEST_F(MWindowTest, CloseNotifiesTheHostBeforeTheQuitMessage) {
  static std::vector<std::pair<int32_t, int32_t>> notified;
  notified.clear();
  ui.SetEventCallback(
      [](MorphUI*, int32_t code, intptr_t value, void*) {
        notified.push_back({code, value});
        return 7;
      },
      nullptr);
  window->OnClose();
  EXPECT_EQ(events.front(), (Event{2, 0, 0}));
  ASSERT_EQ(notified.size(), 1u);
  EXPECT_EQ(notified[0], (std::pair<int32_t, int32_t>{0, 1039}));
  EXPECT_EQ(host->quitCodes, std::vector<int32_t>{1039});
}

TEST_F(MWindowTest, PaintFillsTheDirtyPartAndDrawsRegionsAtItsOrigin) {
  MRegion* r = Make({40, 40, 60, 60});
  r->image = reinterpret_cast<void*>(uintptr_t{1});
  window->AttachRegion(r);
  RecordingDrawSurface surface;
  window->OnPaint({30, 35, 100, 100}, surface);
  ASSERT_EQ(surface.calls.size(), 2u);
  EXPECT_EQ(surface.calls[0].blit.destination.width, 70);
  EXPECT_EQ(surface.calls[1].blit.destination.x, 10);
  EXPECT_EQ(surface.calls[1].blit.destination.y, 5);

  surface.calls.clear();
  window->OnPaint({0, 0, 0, 100}, surface);  // a zero right edge paints nothing
  EXPECT_TRUE(surface.calls.empty());
}

class StringHost : public ReferenceHost {
 public:
  StringHost() : ReferenceHost(HostOptions{}, MString(u"")) {}
  void LoadStringFallback(MString& out, uint32_t id, int32_t flag) override {
    asked.push_back({id, flag});
    out = MString(u"text");
  }
  std::vector<std::pair<uint32_t, int32_t>> asked;
};

TEST(MorphUI, PostsEventsAboveTheUserBaseAndAsksTheHostForStringsWithFallback) {
  StringHost host;
  auto system = std::make_unique<FakeWindowSystem>();
  FakeWindowSystem* fake = system.get();
  MorphUI ui(&host, nullptr, std::move(system));
  EXPECT_EQ(ui.Notify(3, 4), 0);

  auto* window = new MPlainWindow(&ui);
  std::vector<Event> events;
  window->SetListener(
      [](MPlainWindow*, int32_t id, int32_t message, intptr_t param, void* context) {
        static_cast<std::vector<Event>*>(context)->push_back({id, message, param});
      },
      &events);
  ui.SetWindow(window);
  EXPECT_EQ(events, std::vector<Event>{Event(2, 1, 0)});

  ui.PostEvent(-1, 200, 77);
  ASSERT_EQ(fake->posted.size(), 1u);
  EXPECT_EQ(fake->posted[0].message, 1224u);
  EXPECT_EQ(fake->posted[0].wParam, 0xFFFFFFFFu);

  MString out;
  EXPECT_EQ(ui.GetString(out, 71).ToU16(), u"text");
  EXPECT_EQ(host.asked, (std::vector<std::pair<uint32_t, int32_t>>{{71, 1}}));
}

}  // namespace
}  // namespace SASM
