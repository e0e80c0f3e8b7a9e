#pragma once
// One page of the installer window. The window passes it every event while it
// is the root's child; it answers whether it consumed one.
#include <cstdint>

#include "ui/MSkinnedSection.h"

namespace SASM {

class MInstallerWindow;

class MUIPanel : public MSkinnedSection {
 public:
  explicit MUIPanel(MInstallerWindow* window) : installerWindow(window) {}
  ~MUIPanel() override = default;
  void Layout() override {}
  virtual bool HandleEvent(int32_t id, int32_t message, intptr_t param) {
    (void)id;
    (void)message;
    (void)param;
    return false;
  }

  MInstallerWindow* installerWindow;
};

// The skin's logo, which every panel shows at its top left.
MSkinnedSection* MakeLogo(void* skinImage);

// Takes a control a panel owns out of the tree, frees it and forgets it; null stays null.
template <typename T>
void DetachAndDelete(T*& region) {
  if (!region) return;
  region->Detach();
  delete region;
  region = nullptr;
}

}  // namespace SASM
