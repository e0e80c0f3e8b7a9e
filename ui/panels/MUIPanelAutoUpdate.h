#pragma once
// The page of an update offer: its text and size come from the host's dialog
// data; install source 12 runs it without showing anything.
#include <cstdint>

#include "ui/panels/MUIPanel.h"

namespace SASM {

struct MScale9Data;
class MScale9Section;
class MTextArea;

class MUIPanelAutoUpdate : public MUIPanel {
 public:
  static constexpr uint32_t kHiddenInstallSource = 12;
  static constexpr uint32_t kDownloadPageSessionMode = 2;
  static constexpr int32_t kDefaultWidth = 500;
  static constexpr int32_t kDefaultHeight = 270;

  explicit MUIPanelAutoUpdate(MInstallerWindow* window);
  ~MUIPanelAutoUpdate() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  // The word of the download page for a product mask: "activex", "plugin", "ppapi" or empty.
  static const char16_t* KindWord(uint32_t mask);

  MScale9Section* background = nullptr;
  MSkinnedSection* logo = nullptr;
  MSkinnedSection* sideImage = nullptr;
  MScale9Data* backgroundData = nullptr;
  MTextArea* headerText = nullptr;
  MTextArea* bodyText = nullptr;

 private:
  void Resize();
  void Open();
  void AcceptUpdate();
};

}  // namespace SASM
