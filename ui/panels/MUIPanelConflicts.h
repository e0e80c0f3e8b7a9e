#pragma once
// The page that waits for conflicting programs to close: it polls the running
// programs every 31 ticks, lists five by name and counts the rest, and hands
// over to the progress panel when the last one goes.
#include <cstdint>

#include "ui/panels/MUIPanel.h"

namespace SASM {

class MTextArea;

class MUIPanelConflicts : public MUIPanel {
 public:
  static constexpr int32_t kRowCount = 6;
  static constexpr int32_t kNamedRows = 5;
  // The flag of the file test that asks whether the file can be opened for writing.
  static constexpr uint32_t kWriteTestFlag = 512;

  class offendingApp : public MSkinnedSection {
   public:
    offendingApp(MInstallerWindow* window, void* skinImage);
    ~offendingApp() override;
    // Sets the text, places the name and the icon (the first child) by the row's size.
    void SetName(const MString& name);

    MInstallerWindow* installerWindow;
    MTextArea* nameText = nullptr;
    MSkinnedSection* icon = nullptr;
  };

  explicit MUIPanelConflicts(MInstallerWindow* window);
  ~MUIPanelConflicts() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  // Fills the rows from the conflicting programs of the kinds in mask; whether any name was placed.
  bool RefreshConflicts(uint32_t mask);
  // Whether the settings manager in the 32-bit system directory exists and cannot be opened for writing.
  bool IsControlFileLocked();

  // Counts timer messages and posts a poll when the count passes pollPeriod.
  static bool PollTimer(MRegion* region, MWindow* window, MPoint* point, bool inside, uint32_t message,
                        void* context);

  uint32_t pollTicks = 0;
  uint32_t pollPeriod = 30;
  uint8_t anyConflict = 0;
  MTextArea* headerText = nullptr;
  MSkinnedSection* strip = nullptr;
  MSkinnedSection* logo = nullptr;
  offendingApp* rows[kRowCount] = {};

 private:
  void Resize();
  // The product mask the host fills through Notify(6).
  uint32_t QueryProductMask();
};

}  // namespace SASM
