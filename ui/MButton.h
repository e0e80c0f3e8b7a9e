#pragma once
// A push button: three skin slices in one of four looks, a centred text label
// drawn after the slices, and a small press/move/release state machine that
// posts its notifications under the button's control id.
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/MString.h"
#include "ui/MScale3Section.h"

namespace SASM {

class MTextArea;

class MButton : public MScale3Section {
 public:
  enum PressState : uint8_t { kIdle = 0, kHover = 1, kPressedInside = 2, kPressedOutside = 3 };
  enum Look { kNormalLook, kHoverLook, kPressedLook, kDisabledLook };
  // Notifications, posted as (controlId, notification, 0).
  enum Notification : int32_t { kEntered = 0, kLeft = 1, kClicked = 2, kPressed = 3, kReleasedOutside = 4 };

  // The looks must outlive the button; label may be null, and is the button's own.
  MButton(MWindow* window, const MScale3Data* normal, const MScale3Data* hover, const MScale3Data* pressed,
          const MScale3Data* disabled, MTextArea* label);
  ~MButton() override;
  // The slices, then the label over the whole button.
  void Layout() override;
  // Disabling also forgets a press.
  void SetEnabled(bool on);

  const MScale3Data* normalData;
  const MScale3Data* hoverData;
  const MScale3Data* pressedData;
  const MScale3Data* disabledData;
  uint8_t pressState = kIdle;
  MTextArea* labelText = nullptr;
  // Looks made for this button by the Make functions.
  std::vector<std::unique_ptr<MScale3Data>> ownedLooks;

 protected:
  virtual const MScale3Data* LookData(Look look) const;
  // A release in the pressed-inside state: the click itself.
  virtual void Click();
  void SetLook(Look look);

 private:
  static bool Handle(MRegion* region, MWindow* window, MPoint* point, bool inside, uint32_t message, void* context);
  void ShiftLabel(int32_t dy);
  void Post(MWindow* window, Notification notification);
};

// A button of the skin's bottom-bar looks with a centred label of size 16.
MButton* MakeButton(MWindow* window, void* skin, const MString& text);

}  // namespace SASM
