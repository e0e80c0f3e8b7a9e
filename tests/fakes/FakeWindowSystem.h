#pragma once
// A window system in memory: one fake window per MWindow, native children as
// numbered entries in a sibling list, and a record of what was asked.
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/fakes/FakeTextCanvas.h"
#include "ui/IWindowSystem.h"

namespace SASM {

class FakeWindowHost : public IWindowHost {
 public:
  void* Handle() const override { return reinterpret_cast<void*>(uintptr_t{0x1000}); }
  void ApplyWindowRect(const MRect& rect) override { applied.push_back(rect); }
  void InvalidateRect(const MRect& rect) override { invalidated.push_back(rect); }
  void SetTitle(const MString& title) override { this->title = title.ToU16(); }
  void Show(bool show) override { shown = show; }
  void BringToFront() override { ++broughtToFront; }
  void SetCursorKind(int32_t kind) override { cursor = kind; }
  void SetCapture() override { captured = true; }
  void ReleaseCapture() override { captured = false; }
  void PostQuit(int32_t code) override { quitCodes.push_back(code); }
  void StartTimer(uint32_t period) override { timerPeriod = period; }

  void* CreateNativeChild(MRegion& region, const MRect& absolute) override;
  void DestroyNativeChild(void* child) override;
  void ShowNativeChild(void* child, bool show) override { children[Id(child)].shown = show; }
  void MoveNativeChild(void* child, const MRect& absolute) override { children[Id(child)].rect = absolute; }
  void* FirstNativeChild() override { return order.empty() ? nullptr : Handle(order.front()); }
  void* NativeNeighbour(void* child, NativeStep step) override;
  MRegion* RegionOfNative(void* child) override;
  bool HasPlatformFocus(void* child) override { return focus == child; }
  void SetPlatformFocus(void* child) override { focus = child; }

  struct Child {
    MRegion* region = nullptr;
    MRect rect;
    bool shown = true;
  };
  static uintptr_t Id(void* handle) { return reinterpret_cast<uintptr_t>(handle); }
  static void* Handle(uintptr_t id) { return reinterpret_cast<void*>(id); }

  std::vector<MRect> applied;
  std::vector<MRect> invalidated;
  std::u16string title;
  bool shown = false;
  int32_t broughtToFront = 0;
  int32_t cursor = -1;
  bool captured = false;
  std::vector<int32_t> quitCodes;
  uint32_t timerPeriod = 0;
  std::map<uintptr_t, Child> children;
  std::vector<uintptr_t> order;  // z-order of the children, first to last
  void* focus = nullptr;
  uintptr_t nextId = 1;
};

class FakeWindowSystem : public IWindowSystem {
 public:
  struct Posted {
    void* handle;
    uint32_t message;
    uintptr_t wParam;
    intptr_t lParam;
  };

  std::unique_ptr<IWindowHost> CreateWindowHost(MWindow& window, bool minimiseBox) override;
  void PostWindowMessage(void* handle, uint32_t message, uintptr_t wParam, intptr_t lParam) override {
    posted.push_back({handle, message, wParam, lParam});
  }
  int32_t RunMessageLoop(MWindow*) override { return loopResult; }
  void* LoadSkinImage(ImageForm form, int32_t id) override;
  std::unique_ptr<ITextCanvas> CreateTextCanvas(void*, int32_t size) override {
    auto canvas = std::make_unique<FakeTextCanvas>(size);
    lastCanvas = canvas.get();
    return canvas;
  }
  std::unique_ptr<ITooltip> CreateTooltip(void* parent, void* covered) override;
  uint32_t ThreadLocale() override { return threadLocale; }

  FakeWindowHost* lastHost = nullptr;
  bool lastMinimiseBox = false;
  std::vector<Posted> posted;
  int32_t loopResult = 0;
  uint32_t threadLocale = 1033;
  std::map<int32_t, void*> images;  // what LoadImage answers for a plain image id
  FakeTextCanvas* lastCanvas = nullptr;  // the text area made last
  // What tooltips were asked, one line per call: "create", "text T", "add l,t,r,b", "delete", "move l,t,r,b".
  std::vector<std::string> tooltipCalls;
};

}  // namespace SASM
