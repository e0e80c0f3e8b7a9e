#pragma once
// The first page of an install: the banner, the licence box that gates INSTALL,
// and the optional unattended exit after the bar ends.
#include <cstdint>

#include "ui/panels/MUIPanel.h"

namespace SASM {

class MCheckboxButton;
struct MScale9Data;
class MScale9Section;
class MTextArea;
class MTooltipArea;
class MUIPanelProgress;

class MUIPanelInstallerSplash : public MUIPanel {
 public:
  // The default unattended exit delay in milliseconds, and the tick it counts in.
  static constexpr int32_t kDefaultAutoExitDelay = 1000;
  static constexpr int32_t kTickShift = 4;

  explicit MUIPanelInstallerSplash(MInstallerWindow* window);
  ~MUIPanelInstallerSplash() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  // The progress panel's callback during an install; context is the splash.
  static bool InstallDoneCallback(MUIPanelProgress* panel, int32_t code, int32_t reserved, void* splash);
  // The ticks of an "AutoExitDelay" in milliseconds: arithmetic shift right by 4.
  static int32_t AutoExitTicks(int32_t milliseconds) { return milliseconds >> kTickShift; }

  MScale9Section* background = nullptr;
  MSkinnedSection* banner = nullptr;
  MSkinnedSection* logo = nullptr;
  MCheckboxButton* licenseCheckbox = nullptr;
  MScale9Data* backgroundData = nullptr;
  MTextArea* licenseLink = nullptr;
  MTextArea* licenseLabel = nullptr;
  int32_t autoExitTicks = 0;
  MTooltipArea* installTooltip = nullptr;

 private:
  // The rectangles of the controls for the panel's size; nothing once they are gone.
  void Resize();
  void DropControls();
};

}  // namespace SASM
