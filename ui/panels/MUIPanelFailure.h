#pragma once
// The page that shows the last serious entry of the host's error list.
#include "ui/panels/MUIPanel.h"

namespace SASM {

class MTextArea;

class MUIPanelFailure : public MUIPanel {
 public:
  // The least severity the panel looks back for.
  static constexpr int32_t kShownSeverity = 2;

  explicit MUIPanelFailure(MInstallerWindow* window);
  ~MUIPanelFailure() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  MSkinnedSection* strip = nullptr;
  MSkinnedSection* logo = nullptr;
  MTextArea* headerText = nullptr;
  MTextArea* messageText = nullptr;
  // The warning sign beside the header.
  MSkinnedSection* sign = nullptr;

 private:
  void Resize();
  void ShowLastError();
};

}  // namespace SASM
