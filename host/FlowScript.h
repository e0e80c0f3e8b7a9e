#pragma once
// What an unattended run does in the installer window: the clicks a person
// would make, in order, each aimed where the window places its control.
#include <cstdint>
#include <string>
#include <vector>

#include "host/HostOptions.h"
#include "ui/MRect.h"

namespace SASM {

class FlowScript {
 public:
  enum class Action {
    kTick,       // the licence box of the installer splash
    kLabel,      // the licence text beside it, which toggles the box too
    kRight,      // the bar's right button: INSTALL, UNINSTALL, DONE or the update's
    kLeft,       // the bar's left button: QUIT or REMIND ME LATER
    kUninstall,  // UNINSTALL of the maintenance panel
    kReinstall,  // REINSTALL of the maintenance panel
    kDone,       // once the work is done: the right button, until the window ends
    kClose,      // the close box
    kAwait,      // until the flow reaches a stage
    kWait,       // a pause
    kEnd,        // until the window ends
  };
  struct Step {
    Action action;
    std::string word;        // as written
    uint32_t milliseconds = 0;  // of wait=MS
    std::string stage;       // of await=STAGE
  };

  // Steps joined by commas: tick label right left uninstall reinstall done close
  // end wait=MS await=STAGE. False with error set on anything else.
  bool Parse(const std::u16string& text);
  // The flow a person goes through in each window mode; source 12 shows no window.
  static std::u16string DefaultFor(HostOptions::Mode mode, uint32_t installSource);
  // Where the action's control lies in a client area of width by height; empty
  // for actions that click nothing.
  static MRect Target(Action action, int32_t width, int32_t height);

  std::vector<Step> steps;
  std::string error;
};

}  // namespace SASM
