#include "ui/MButton.h"

#include "ui/MTextArea.h"
#include "ui/MWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

MButton::MButton(MWindow* w, const MScale3Data* normal, const MScale3Data* hover, const MScale3Data* pressed,
                 const MScale3Data* disabled, MTextArea* label)
    : MScale3Section(normal, w),
      normalData(normal),
      hoverData(hover),
      pressedData(pressed),
      disabledData(disabled),
      labelText(label) {
  controlKind = 1;
  handler = &MButton::Handle;
  handlerContext = this;
  if (labelText && right) {
    // After the three slices in drawing order, but not a child of its own.
    right->next = labelText;
    labelText->prev = right;
    labelText->parent = this;
  }
}

MButton::~MButton() {
  if (right) right->next = nullptr;
  delete labelText;
}

void MButton::Layout() {
  MScale3Section::Layout();
  if (!labelText) return;
  labelText->bounds = MRect::FromSize(0, 0, bounds.Width(), bounds.Height());
  labelText->Layout();
}

void MButton::SetEnabled(bool on) {
  MRegion::SetEnabled(on);
  if (!on) pressState = kIdle;
  data = LookData(on ? kNormalLook : kDisabledLook);
  Layout();
}

const MScale3Data* MButton::LookData(Look look) const {
  switch (look) {
    case kHoverLook:
      return hoverData;
    case kPressedLook:
      return pressedData;
    case kDisabledLook:
      return disabledData;
    default:
      return normalData;
  }
}

void MButton::SetLook(Look look) {
  data = LookData(look);
  Layout();
}

void MButton::Click() {}

void MButton::ShiftLabel(int32_t dy) {
  if (!labelText) return;
  labelText->bounds = MRect::FromSize(0, dy, bounds.Width(), bounds.Height());
  labelText->Invalidate();
}

void MButton::Post(MWindow* w, Notification notification) {
  if (w && w->morph) w->morph->PostEvent(controlId, notification, 0);
}

bool MButton::Handle(MRegion*, MWindow* window, MPoint*, bool inside, uint32_t message, void* context) {
  auto* button = static_cast<MButton*>(context);
  if (!button->enabled) return false;
  uint8_t& state = button->pressState;
  switch (message) {
    case MWindow::kMouseMove:
      if (state == kIdle && inside) {
        if (window) window->CaptureRegion(button);
        button->SetLook(kHoverLook);
        state = kHover;
        button->Post(window, kEntered);
      } else if (state == kHover && !inside) {
        if (window) window->ReleaseRegionCapture();
        button->SetLook(kNormalLook);
        state = kIdle;
        button->Post(window, kLeft);
        return false;
      } else if (state == kPressedInside && !inside) {
        button->SetLook(kHoverLook);
        button->ShiftLabel(0);
        state = kPressedOutside;
        button->Post(window, kLeft);
      } else if (state == kPressedOutside && inside) {
        button->SetLook(kPressedLook);
        button->ShiftLabel(1);
        state = kPressedInside;
        button->Post(window, kEntered);
      }
      return true;
    case MWindow::kButtonDown:
      button->SetLook(kPressedLook);
      button->ShiftLabel(1);
      if (window && button->nativeWindow) window->SetFocusRegion(button, window->ringVisible != 0);
      state = kPressedInside;
      button->Post(window, kPressed);
      return true;
    case MWindow::kButtonUp:
      if (state == kPressedInside) {
        if (window) window->ReleaseRegionCapture();
        button->Click();
        button->SetLook(kHoverLook);
        state = kHover;
        button->Post(window, kClicked);
      } else if (state == kPressedOutside) {
        if (window) window->ReleaseRegionCapture();
        button->SetLook(kNormalLook);
        state = kIdle;
        button->Post(window, kReleasedOutside);
      } else {
        button->Layout();
      }
      return true;
    default:
      return false;
  }
}

MButton* MakeButton(MWindow* window, void* skin, const MString& text) {
  // Left cap 3, middle 1, right cap 3, all 33 high at y 77: normal, hover, pressed, disabled.
  static constexpr int32_t kLookX[] = {13, 20, 27, 6};
  std::vector<std::unique_ptr<MScale3Data>> looks;
  for (int32_t x : kLookX)
    looks.push_back(std::make_unique<MScale3Data>(MScale3Data{skin, {x, 77, 3, 33}, {x + 3, 77, 1, 33}, {x + 4, 77, 3, 33}, 2}));
  auto* label = new MTextArea(window, 16, false, false);
  label->drawFlags |= MRegion::kNativeWindow;
  label->format = MTextArea::kCentred;
  label->SetText(text);
  auto* button = new MButton(window, looks[0].get(), looks[1].get(), looks[2].get(), looks[3].get(), label);
  button->ownedLooks = std::move(looks);
  button->drawFlags |= MRegion::kNativeWindow;
  button->label = text;
  return button;
}

}  // namespace SASM
