#pragma once
// The page of the running bar: paced by the timer, 2 a tick, it tells its
// callback when it reaches the target; after an install it may offer the
// update choice.
#include <cstdint>

#include "ui/MRadioGroup.h"
#include "ui/MScale3Data.h"
#include "ui/panels/MUIPanel.h"

namespace SASM {

class MProgressBar;
class MRadioButton;
class MTextArea;
class MUIPanelProgress;

// Codes: 0 DONE pressed, 1 a tick after the bar stopped, 5 the bar just reached its target.
using ProgressCallback = bool (*)(MUIPanelProgress* panel, int32_t code, int32_t reserved, void* context);

class MUIPanelProgress : public MUIPanel {
 public:
  enum CallbackCode : int32_t { kDone = 0, kStoppedTick = 1, kReachedTarget = 5 };
  // The GetFlags bit of a run that offers the update choice.
  static constexpr uint32_t kUpdateChoiceFlag = 1024;
  static constexpr char16_t kUpdateChoiceVersion[] = u"11.3.0.0";
  static constexpr int32_t kRadioCount = 3;

  explicit MUIPanelProgress(MInstallerWindow* window);
  ~MUIPanelProgress() override;
  bool HandleEvent(int32_t id, int32_t message, intptr_t param) override;

  // Arms the bar: from current to target by step with callback, running.
  void Arm(ProgressCallback cb, void* context, float from, float to, float by);
  void ShowUpdateChoice();
  // Four dot-separated decimal numbers compared in order: negative, 0 or positive.
  static int32_t CompareVersions(const MString& a, const MString& b);
  // Posts a progress tick at every timer message.
  static bool TickTimer(MRegion* region, MWindow* window, MPoint* point, bool inside, uint32_t message,
                        void* context);

  uint8_t running = 0;
  float current = 0.0f;
  float target = 0.0f;
  float step = 0.0f;
  ProgressCallback callback = nullptr;
  void* callbackContext = nullptr;
  MProgressBar* bar = nullptr;
  MTextArea* titleText = nullptr;
  MTextArea* statusText = nullptr;
  MTextArea* percentText = nullptr;
  MSkinnedSection* logo = nullptr;
  int32_t lineCount = 0;
  MTextArea* bodyText = nullptr;
  MTextArea* learnMoreLink = nullptr;
  MRadioGroup radioGroup;
  MRadioButton* radios[kRadioCount] = {};
  MTextArea* radioLabels[kRadioCount] = {};
  uint8_t choiceShown = 0;
  MTextArea* headingText = nullptr;
  // The bar's looks, which must outlive it.
  MScale3Data trackLook;
  MScale3Data fillLook;

 private:
  void Resize();
  void Tick();
  // Stops the bar: the title comes back bold with mark-up, and the callback hears code 5.
  void Finish();
  // Whether the host's versions allow the update choice at the end of the bar.
  bool OffersUpdateChoice();
};

}  // namespace SASM
