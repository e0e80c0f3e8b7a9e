#pragma once
// Runs a flow script in the installer window from outside the window's thread:
// waits for each control to be there, posts the pointer messages of a click at
// its place in the client area, and saves a picture at each new stage.
#include "engine/win32/WindowsApi.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/FlowScript.h"
#include "host/InstallerFlow.h"

namespace SASM {

class FlowDriver {
 public:
  enum class Outcome { kCompleted, kTimedOut };

  // shotsDirectory empty: no pictures. The flow's record tells the stages.
  FlowDriver(HWND window, InstallerFlow& flow, std::wstring shotsDirectory);

  // The steps, then the window's end; timeoutMs 0 waits as long as it takes.
  Outcome Run(const std::vector<FlowScript::Step>& steps, uint32_t timeoutMs);

 private:
  enum class Wait { kMet, kEnded, kTimedOut };

  // Polls until condition holds, the window ends or the deadline passes, taking pictures meanwhile.
  Wait Until(const std::function<bool()>& condition);
  // Polls for a while whatever happens; false when the deadline passed.
  bool Pause(uint32_t milliseconds);
  bool Visible() const;
  // The native child of a control: visible, or absent (then the window alone decides).
  bool ControlShown(int32_t controlId) const;
  void Click(const FlowScript::Step& step);
  // Says once that the window is shown, and at what size; then Shoot.
  void Watch();
  // A picture of a stage that has held still for a moment, once per stage.
  void Shoot();
  bool ShotTaken() const;
  bool PastDeadline() const;

  HWND window_;
  InstallerFlow& flow_;
  std::wstring shotsDirectory_;
  uint64_t deadline_ = 0;
  std::string shotStage_;
  std::string seenStage_;
  uint64_t seenSince_ = 0;
  int shots_ = 0;
  bool announced_ = false;
};

}  // namespace SASM
