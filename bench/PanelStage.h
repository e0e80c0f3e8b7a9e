#pragma once
// The installer window driven to one state of one panel, as the gallery draws
// it and the panel benchmark times it: a host whose answers are scripted per
// state, a shim whose conflict list is scripted, the window built from the
// module's images and strings for the thread's locale, and the events a host
// and a person would send, delivered in order.
#include "engine/win32/WindowsApi.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"

namespace SASM {

class GalleryHost;
class GalleryShim;
class PanelStage;

// One picture's worth of set-up: the answers, then the events.
struct PanelState {
  const char* name;   // "<panel>-<state>", the file name
  const char* panel;  // "<panel>", the benchmark's row
  void (*script)(GalleryHost& host, GalleryShim& shim);
  void (*drive)(PanelStage& stage);
};

class PanelStage {
 public:
  // Every state the gallery draws, panel by panel.
  static const std::vector<PanelState>& States();
  static const PanelState* Find(const std::string& name);

  // module holds the skin images and the string tables.
  PanelStage(HMODULE module, const PanelState& state);
  ~PanelStage();
  PanelStage(const PanelStage&) = delete;
  PanelStage& operator=(const PanelStage&) = delete;

  // Scripts the host, builds the window and sends the state's events; the
  // window ends at its target size.
  void Build();

  // The client size, which is the picture's.
  int Width() const { return window_->rect.right; }
  int Height() const { return window_->rect.bottom; }
  MInstallerWindow& Window() { return *window_; }
  // Whether the window shows the state's panel.
  bool Reached() const;

  // A whole repaint into dc (a context of at least Width by Height), as the window paints its back buffer.
  void PaintInto(HDC dc);
  // A whole repaint into the window's own back buffer.
  void PaintBackBuffer();

  // What a state's events are made of.
  void Post(int32_t id, int32_t message, intptr_t param = 0);
  // Moves the pointer onto a region, presses and releases it there.
  void Click(MRegion* region);
  // Progress ticks, one at a time; ticks until the bar has stopped, at most limit.
  void Ticks(int count);
  void TicksUntilStopped(int limit = 60);
  // Delivers what is queued for the window: its events, not its timer.
  void Deliver();
  // Makes the window the size it animates to.
  void Settle();

 private:
  static int32_t OnNotify(MorphUI* ui, int32_t code, intptr_t value, void* context);

  const PanelState& state_;
  HMODULE module_;
  std::unique_ptr<GalleryHost> host_;
  GalleryShim* shim_ = nullptr;
  std::unique_ptr<MorphUI> ui_;
  MInstallerWindow* window_ = nullptr;
};

}  // namespace SASM
