#pragma once
// The first page of an uninstall: what will be removed, and UNINSTALL.
#include <cstdint>

#include "ui/panels/MUIPanel.h"

namespace SASM {

struct MScale9Data;
class MScale9Section;
class MTextArea;
class MUIPanelProgress;

class MUIPanelUninstallerSplash : public MUIPanel {
 public:
  explicit MUIPanelUninstallerSplash(MInstallerWindow* window);
  ~MUIPanelUninstallerSplash() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  // The progress panel's callback during an uninstall, from this splash or the maintain panel.
  static bool UninstallDoneCallback(MUIPanelProgress* panel, int32_t code, int32_t reserved, void* context);
  // Arms the progress panel to run from 100 down to 0 with the uninstall callback.
  static void ArmUninstall(MInstallerWindow* window);

  MScale9Section* background = nullptr;
  MSkinnedSection* logo = nullptr;
  MSkinnedSection* banner = nullptr;
  MTextArea* bodyText = nullptr;
  MScale9Data* backgroundData = nullptr;

 private:
  void Resize();
};

}  // namespace SASM
