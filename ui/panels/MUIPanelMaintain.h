#pragma once
// The page of a run over an installed product: REINSTALL (which does nothing
// here), UNINSTALL straight to the progress panel, and DONE.
#include "ui/panels/MUIPanel.h"

namespace SASM {

class MButton;
class MTextArea;

class MUIPanelMaintain : public MUIPanel {
 public:
  explicit MUIPanelMaintain(MInstallerWindow* window);
  ~MUIPanelMaintain() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  MButton* reinstallButton = nullptr;
  MButton* uninstallButton = nullptr;
  MTextArea* statusText = nullptr;
  MTextArea* uninstallText = nullptr;
};

}  // namespace SASM
