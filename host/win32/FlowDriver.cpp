#include "host/win32/FlowDriver.h"

#include <cwchar>

#include "host/win32/ClientAreaPng.h"

namespace SASM {
namespace {

constexpr DWORD kPollMs = 40;
// After a click, time for the window to act on it before the next step looks.
constexpr uint32_t kSettleMs = 300;
// A stage is pictured once it has held this long, so that it has been painted.
constexpr uint64_t kStillMs = 200;
// Between clicks of DONE while the window has not ended.
constexpr uint32_t kDoneRetryMs = 1500;

constexpr int32_t kLeftButtonId = 100;
constexpr int32_t kRightButtonId = 101;
constexpr int32_t kFirstPanelButtonId = 200;
constexpr int32_t kSecondPanelButtonId = 201;

bool StartsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

}  // namespace

FlowDriver::FlowDriver(HWND window, InstallerFlow& flow, std::wstring shotsDirectory)
    : window_(window), flow_(flow), shotsDirectory_(std::move(shotsDirectory)) {}

bool FlowDriver::PastDeadline() const { return deadline_ != 0 && GetTickCount64() >= deadline_; }

bool FlowDriver::Visible() const { return IsWindow(window_) && IsWindowVisible(window_); }

bool FlowDriver::ControlShown(int32_t controlId) const {
  HWND child = GetDlgItem(window_, controlId);
  return Visible() && (!child || IsWindowVisible(child));
}

bool FlowDriver::ShotTaken() const {
  return shotsDirectory_.empty() || !Visible() || shotStage_ == flow_.Stage();
}

void FlowDriver::Watch() {
  if (!announced_ && Visible()) {
    announced_ = true;
    RECT client{};
    GetClientRect(window_, &client);
    flow_.Say("window shown " + std::to_string(client.right) + "x" + std::to_string(client.bottom));
  }
  Shoot();
}

void FlowDriver::Shoot() {
  if (shotsDirectory_.empty()) return;
  const std::string stage = flow_.Stage();
  const uint64_t now = GetTickCount64();
  if (stage != seenStage_) {
    seenStage_ = stage;
    seenSince_ = now;
  }
  if (stage.empty() || stage == shotStage_ || !Visible() || now - seenSince_ < kStillMs) return;
  shotStage_ = stage;
  wchar_t number[8];
  swprintf(number, 8, L"%02d", ++shots_);
  std::wstring path = shotsDirectory_ + L"\\" + number + L"-" + std::wstring(stage.begin(), stage.end()) + L".png";
  bool saved = SaveClientAreaPng(window_, path);
  flow_.Say("shot " + stage + ": " + (saved ? "saved" : "not saved"));
}

FlowDriver::Wait FlowDriver::Until(const std::function<bool()>& condition) {
  for (;;) {
    Watch();
    if (condition()) return Wait::kMet;
    if (flow_.Ended() || !IsWindow(window_)) return Wait::kEnded;
    if (PastDeadline()) return Wait::kTimedOut;
    Sleep(kPollMs);
  }
}

bool FlowDriver::Pause(uint32_t milliseconds) {
  const uint64_t until = GetTickCount64() + milliseconds;
  while (GetTickCount64() < until) {
    Watch();
    if (PastDeadline()) return false;
    Sleep(kPollMs);
  }
  return true;
}

void FlowDriver::Click(const FlowScript::Step& step) {
  RECT client{};
  GetClientRect(window_, &client);
  MRect target = FlowScript::Target(step.action, client.right, client.bottom);
  const int x = (target.left + target.right) / 2;
  const int y = (target.top + target.bottom) / 2;
  flow_.Say("auto: " + step.word + " at " + std::to_string(x) + "," + std::to_string(y));
  const LPARAM at = MAKELPARAM(x, y);
  PostMessageW(window_, WM_MOUSEMOVE, 0, at);
  PostMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, at);
  PostMessageW(window_, WM_LBUTTONUP, 0, at);
}

FlowDriver::Outcome FlowDriver::Run(const std::vector<FlowScript::Step>& steps, uint32_t timeoutMs) {
  deadline_ = timeoutMs ? GetTickCount64() + timeoutMs : 0;
  using Action = FlowScript::Action;
  for (const FlowScript::Step& step : steps) {
    Wait wait = Wait::kMet;
    // The control's own condition; every click also waits for the stage's picture.
    std::function<bool()> ready;
    switch (step.action) {
      case Action::kTick:
      case Action::kLabel:
        ready = [this] { return StartsWith(flow_.Stage(), "installer-splash") && ControlShown(kFirstPanelButtonId); };
        break;
      case Action::kRight:
        ready = [this] { return ControlShown(kRightButtonId); };
        break;
      case Action::kLeft:
        ready = [this] { return ControlShown(kLeftButtonId); };
        break;
      case Action::kUninstall:
        ready = [this] { return flow_.Stage() == "maintain" && ControlShown(kSecondPanelButtonId); };
        break;
      case Action::kReinstall:
        ready = [this] { return flow_.Stage() == "maintain" && ControlShown(kFirstPanelButtonId); };
        break;
      case Action::kDone:
        ready = [this] { return flow_.Stage() == InstallerFlow::kFinished && ControlShown(kRightButtonId); };
        break;
      case Action::kClose:
        ready = [this] { return Visible(); };
        break;
      case Action::kAwait:
        ready = [this, &step] { return flow_.Stage() == step.stage; };
        break;
      case Action::kWait:
        if (!Pause(step.milliseconds)) wait = Wait::kTimedOut;
        break;
      case Action::kEnd:
        ready = [] { return false; };
        break;
    }
    if (ready) wait = Until([&] { return ready() && ShotTaken(); });
    if (wait == Wait::kTimedOut) break;
    if (wait == Wait::kEnded) {
      if (step.action != Action::kEnd && step.action != Action::kDone)
        flow_.Say("auto: the window ended before " + step.word);
      return Outcome::kCompleted;
    }
    switch (step.action) {
      case Action::kClose:
        flow_.Say("auto: close");
        PostMessageW(window_, WM_CLOSE, 0, 0);
        break;
      case Action::kDone:
        // DONE may be enabled a moment after the work is reported: click until the window ends.
        for (;;) {
          Click(step);
          const uint64_t retry = GetTickCount64() + kDoneRetryMs;
          wait = Until([retry] { return GetTickCount64() >= retry; });
          if (wait != Wait::kMet) break;
        }
        break;
      case Action::kAwait:
      case Action::kWait:
      case Action::kEnd:
        break;
      default:
        Click(step);
        if (step.action == Action::kTick || step.action == Action::kLabel) flow_.SetStage("installer-splash-ticked");
        if (step.action == Action::kUninstall) flow_.SetStage(InstallerFlow::kProgress);
        if (!Pause(kSettleMs)) wait = Wait::kTimedOut;
    }
    if (wait == Wait::kTimedOut) break;
  }
  // Whatever the script left, the run is over when the window ends.
  if (!PastDeadline() && Until([] { return false; }) == Wait::kEnded) return Outcome::kCompleted;
  return flow_.Ended() ? Outcome::kCompleted : Outcome::kTimedOut;
}

}  // namespace SASM
