#pragma once
// The one top-level window of the installer, uninstaller and updater: a skinned
// root, a bottom bar with two buttons, and the panels, one at a time the child
// of the root. It holds no install logic: the host opens the first panel by
// posting (3, 6, n), hears of each milestone through Notify and answers the
// panels' questions through its callbacks.
#include <cstdint>

#include "engine/MString.h"
#include "ui/MScale3Data.h"
#include "ui/MWindow.h"

namespace SASM {

class HostCallbacks;
class LumenBrokerShim;
class MButton;
class MScale3Section;
struct MScale9Data;
class MScale9Section;
class MSkinnedSection;
class MTextArea;
class MUIPanel;
class MUIPanelAutoUpdate;
class MUIPanelConflicts;
class MUIPanelFailure;
class MUIPanelInstallerSplash;
class MUIPanelMaintain;
class MUIPanelProgress;
class MUIPanelUninstallerSplash;

class MInstallerWindow : public MWindow {
 public:
  // Senders of the events that are not controls.
  static constexpr int32_t kTickEventId = 1;
  static constexpr int32_t kWindowEventId = 2;
  static constexpr int32_t kCommandEventId = 3;
  static constexpr int32_t kFailureEventId = 4;
  // Messages of those senders.
  static constexpr int32_t kProgressTick = 4;
  static constexpr int32_t kConflictPoll = 200;
  static constexpr int32_t kClosing = 0;
  static constexpr int32_t kShown = 1;
  static constexpr int32_t kResized = 2;
  static constexpr int32_t kHidden = 3;
  static constexpr int32_t kFinish = 5;
  static constexpr int32_t kOpenPanel = 6;
  static constexpr int32_t kShowError = 8;
  // Control ids.
  static constexpr int32_t kLeftButtonId = 100;
  static constexpr int32_t kRightButtonId = 101;
  static constexpr int32_t kPanelButtonId = 200;
  static constexpr int32_t kSecondPanelButtonId = 201;
  static constexpr int32_t kFirstRadioId = 300;
  // Exit codes of the panels.
  static constexpr int32_t kExitFinished = 0;
  static constexpr int32_t kExitLeftSplash = 1039;
  static constexpr int32_t kExitQuit = -1;
  static constexpr uint32_t kBackgroundColour = 3355442;
  static constexpr int32_t kWindowHeight = 345;
  static constexpr int32_t kBarHeight = 68;
  // Images of the skin.
  static constexpr int32_t kSkinImageId = 161;
  static constexpr int32_t kBannerImageId = 164;

  // Hidden and 100 by 100 until a panel shows it; the contents are built by (2, 1, 0).
  explicit MInstallerWindow(MorphUI* ui);
  ~MInstallerWindow() override;

  void HandleEvent(int32_t id, int32_t message, intptr_t param) override;
  void SetFocusRegion(MRegion* region, bool showRing) override;

  // The panel shown now: the first child of root, or null.
  MUIPanel* ActivePanel() const;
  void ShowPanel(MUIPanel* panel);
  // The enabled flag, the label's alpha (255 or 128) and the skin (normal or disabled).
  void SetButtonEnabled(MButton* button, bool on);
  // Width from string 71 (no digits: 450), height 345, at the origin; ApplyRect with notification.
  void SizeFromStrings();
  // Deletes failurePanel and autoUpdatePanel and clears both pointers.
  void DeleteTransientPanels();
  // Sets a button's label text (and its accessible name) and lays the button out.
  void SetButtonLabel(MButton* button, const MString& text);

  // What the panels ask for.
  MString String(uint32_t id);
  HostCallbacks& Host() const;
  LumenBrokerShim* Shim() const;
  uint32_t ThreadLocale() const;

  void* skinImage = nullptr;
  void* bannerImage = nullptr;
  MSkinnedSection* root = nullptr;
  MScale3Section* bottomBar = nullptr;
  MButton* leftButton = nullptr;
  MButton* rightButton = nullptr;
  MUIPanelInstallerSplash* installerSplash = nullptr;
  MUIPanelUninstallerSplash* uninstallerSplash = nullptr;
  MUIPanelMaintain* maintainPanel = nullptr;
  MUIPanelConflicts* conflictsPanel = nullptr;
  MUIPanelProgress* progressPanel = nullptr;
  MUIPanelFailure* failurePanel = nullptr;
  MUIPanelAutoUpdate* autoUpdatePanel = nullptr;
  MScale9Data* focusRingData = nullptr;
  MTextArea* restartText = nullptr;
  MTextArea* messageText = nullptr;
  MSkinnedSection* restartIcon = nullptr;
  MScale9Section* focusRing = nullptr;

 private:
  void Create();
  void Resize();
  // Builds the panel of an open request on first use; null for an unknown number.
  MUIPanel* PanelFor(intptr_t number);

  // The bottom bar's one look; the bar keeps a pointer to it.
  MScale3Data bottomBarData_;
};

}  // namespace SASM
