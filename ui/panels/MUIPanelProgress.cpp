#include "ui/panels/MUIPanelProgress.h"

#include <initializer_list>

#include "engine/HostCallbacks.h"
#include "ui/LocaleMetrics.h"
#include "ui/LocalizedText.h"
#include "ui/MButton.h"
#include "ui/MProgressBar.h"
#include "ui/MRadioButton.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"

namespace SASM {

namespace {

constexpr uint32_t kPercentString = 15;
constexpr uint32_t kDoneString = 16;
constexpr uint32_t kLearnMoreString = 85;
constexpr uint32_t kHeadingString = 92;
constexpr uint32_t kBodyString = 94;
constexpr uint32_t kRadioStrings[] = {82, 83, 84};
constexpr uint32_t kLinkColours[] = {16777215, 12632256, 16777215};

template <typename T>
void Attach(MRegion* parent, T* child) {
  if (child) parent->AttachChild(child);
}

template <typename T>
void Place(T* region, const MRect& rect) {
  if (!region) return;
  region->bounds = rect;
  region->Layout();
}

MTextArea* MakeText(MInstallerWindow* window, int32_t size, bool markup, bool bold, uint32_t format) {
  auto* text = new MTextArea(window, size, markup, bold);
  text->format = format;
  return text;
}

// One of the four dot-separated numbers; a missing part counts as 0.
uint32_t VersionPart(std::u16string_view& rest) {
  uint32_t value = 0;
  size_t i = 0;
  for (; i < rest.size() && rest[i] >= u'0' && rest[i] <= u'9'; ++i) value = value * 10 + (rest[i] - u'0');
  const size_t dot = rest.find(u'.', i);
  rest = dot == std::u16string_view::npos ? std::u16string_view() : rest.substr(dot + 1);
  return value;
}

}  // namespace

MUIPanelProgress::MUIPanelProgress(MInstallerWindow* window) : MUIPanel(window) {
  handler = &MUIPanelProgress::TickTimer;
  handlerContext = this;
  void* skin = window->skinImage;
  trackLook = MScale3Data{skin, {4, 44, 4, 33}, {8, 44, 1, 33}, {9, 44, 4, 33}, 2};
  fillLook = MScale3Data{skin, {2, 77, 1, 29}, {3, 77, 1, 29}, {4, 77, 2, 29}, 2};
  bar = new MProgressBar(window, &trackLook, &fillLook);
  titleText = MakeText(window, 16, false, false, MTextArea::kLeft);
  titleText->verticalOffset = 1;
  statusText = MakeText(window, 15, true, false, MTextArea::kWordEllipsis);
  percentText = MakeText(window, 14, false, false, MTextArea::kRight);
  logo = MakeLogo(skin);
  headingText = MakeText(window, 18, false, true, MTextArea::kLeft);
  headingText->SetText(window->String(kHeadingString));
  bodyText = MakeText(window, 16, false, false, MTextArea::kLeft);
  bodyText->SetText(window->String(kBodyString));
  learnMoreLink = MakeText(window, 16, true, false, MTextArea::kWordEllipsis);
  learnMoreLink->SetText(window->String(kLearnMoreString));
  learnMoreLink->linkTextColor = kLinkColours[0];
  learnMoreLink->linkNormalColor = kLinkColours[1];
  learnMoreLink->linkHoverColor = kLinkColours[2];
  for (int32_t i = 0; i < kRadioCount; ++i) {
    radios[i] = MakeRadio(window, skin, i == 0, i, &radioGroup);
    radios[i]->controlId = MInstallerWindow::kFirstRadioId + i;
    radioLabels[i] = MakeText(window, 16, false, false, MTextArea::kLeft);
    radioLabels[i]->SetText(window->String(kRadioStrings[i]));
    // A click on the label is a click on its button.
    radioLabels[i]->handler = radios[i]->handler;
    radioLabels[i]->handlerContext = radios[i]->handlerContext;
  }
}

MUIPanelProgress::~MUIPanelProgress() {
  DetachAndDelete(titleText);
  DetachAndDelete(statusText);
  DetachAndDelete(percentText);
  DetachAndDelete(bar);
  DetachAndDelete(bodyText);
  DetachAndDelete(learnMoreLink);
  for (MRadioButton*& radio : radios) DetachAndDelete(radio);
  for (MTextArea*& label : radioLabels) DetachAndDelete(label);
  DetachAndDelete(headingText);
  DetachAndDelete(logo);
}

void MUIPanelProgress::Arm(ProgressCallback cb, void* context, float from, float to, float by) {
  callback = cb;
  callbackContext = context;
  current = from;
  target = to;
  step = by;
  running = 1;
}

bool MUIPanelProgress::TickTimer(MRegion*, MWindow* window, MPoint*, bool, uint32_t message, void*) {
  if (message == MWindow::kTimer)
    window->morph->PostEvent(MInstallerWindow::kTickEventId, MInstallerWindow::kProgressTick, 0);
  return false;
}

int32_t MUIPanelProgress::CompareVersions(const MString& a, const MString& b) {
  std::u16string_view left = a.View(), right = b.View();
  for (int part = 0; part < 4; ++part) {
    const uint32_t x = VersionPart(left), y = VersionPart(right);
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

void MUIPanelProgress::Resize() {
  const int32_t w = bounds.Width();
  Place(bar, MRect::FromSize(94, 87, w - 111, 33));
  if (titleText) titleText->verticalOffset = 1;
  Place(titleText, MRect::FromSize(97, 40, w - 85, 25));
  Place(statusText, MRect::FromSize(20, 230, w - 85, 40));
  Place(percentText, MRect::FromSize(w - 80, 126, 60, 20));
  Place(logo, MRect::FromSize(bounds.left + 10, 1, 47, 71));
  if (choiceShown) {
    MInstallerWindow& window = *installerWindow;
    window.targetRect = MRect{0, 0, window.rect.right, (lineCount + 22) * 15};
  }
}

void MUIPanelProgress::Finish() {
  running = 0;
  if (titleText) {
    MTextArea* old = titleText;
    old->Detach();
    auto* bold = new MTextArea(installerWindow, 16, true, true);
    bold->SetText(old->text);
    bold->drawFlags = old->drawFlags;
    bold->format = old->format;
    bold->bounds = old->bounds;
    bold->visible = old->visible;
    delete old;
    AttachChild(bold);
    titleText = bold;
  }
  if (callback) callback(this, kReachedTarget, 0, callbackContext);
  if (percentText) {
    percentText->SetText(MString::Empty());
    percentText->Layout();
  }
  if (titleText) {
    titleText->verticalOffset = 1;
    titleText->Layout();
  }
}

bool MUIPanelProgress::OffersUpdateChoice() {
  HostCallbacks& host = installerWindow->Host();
  MString versions[3];
  host.GetPreviousActiveXVersion(versions[0]);
  host.GetPreviousPluginVersion(versions[1]);
  host.GetPreviousPepperVersion(versions[2]);
  bool anyNewer = false;
  for (const MString& version : versions)
    anyNewer = anyNewer || CompareVersions(version, MString(kUpdateChoiceVersion)) > 0;
  if (host.SkipsUpdateChoice() && anyNewer) return false;
  return (host.GetFlags() & kUpdateChoiceFlag) != 0;
}

void MUIPanelProgress::Tick() {
  if (!running) {
    if (callback) callback(this, kStoppedTick, 0, callbackContext);
    return;
  }
  if ((step > 0 && current < target) || (step <= 0 && current > target)) {
    current += step;
    if (bar) {
      bar->value = static_cast<int32_t>(current);
      bar->Layout();
    }
    if (percentText) {
      percentText->SetText(LocalizedText::Fill(installerWindow->String(kPercentString),
                                               MString::FromNumber(static_cast<int32_t>(current))));
      percentText->Layout();
    }
    return;
  }
  Finish();
  if (OffersUpdateChoice()) ShowUpdateChoice();
}

void MUIPanelProgress::ShowUpdateChoice() {
  choiceShown = 1;
  if (bar) bar->Detach();
  const int32_t w = bounds.Width();
  const LocaleMetrics& metrics = LocaleMetrics::For(installerWindow->ThreadLocale());
  for (MTextArea* text : {headingText, bodyText, learnMoreLink})
    if (text) text->verticalOffset = metrics.updateChoiceTextOffset;
  // Labels keep their offset where the locale gives none; Japanese moves only the second.
  if (metrics.updateChoiceFirstLabelOffset) {
    if (radioLabels[0]) radioLabels[0]->verticalOffset = metrics.updateChoiceFirstLabelOffset;
    if (radioLabels[2]) radioLabels[2]->verticalOffset = metrics.updateChoiceFirstLabelOffset;
  }
  if (metrics.updateChoiceSecondLabelOffset && radioLabels[1])
    radioLabels[1]->verticalOffset = metrics.updateChoiceSecondLabelOffset;

  if (headingText) lineCount = headingText->Render();
  Place(headingText, MRect::FromEdges(97, 15, w - 20, 33));
  Attach(this, bodyText);
  if (bodyText) {
    const int32_t n = bodyText->Render();
    lineCount = n;
    Place(bodyText, MRect::FromEdges(97, 15 * n + 25, w - 20, 15 * n + 78));
  }
  Attach(this, learnMoreLink);
  Place(learnMoreLink, MRect::FromSize(97, (lineCount + 3) * 15, w - 100, 40));
  for (MRadioButton* radio : radios) Attach(this, radio);
  // Only the first row follows the body's height; the others stay where they are.
  Attach(this, radioLabels[0]);
  Place(radios[0], MRect::FromSize(97, 15 * lineCount + 83, 15, 15));
  Place(radioLabels[0], MRect::FromEdges(117, 98, w - 20, 116));
  Attach(this, radioLabels[1]);
  Place(radios[1], MRect::FromSize(97, 122, 15, 15));
  Place(radioLabels[1], MRect::FromEdges(117, 122, w - 20, 140));
  Attach(this, radioLabels[2]);
  Place(radios[2], MRect::FromSize(97, 146, 15, 15));
  Place(radioLabels[2], MRect::FromEdges(117, 146, w - 20, 164));
}

bool MUIPanelProgress::HandleEvent(int32_t id, int32_t message, intptr_t) {
  MInstallerWindow& window = *installerWindow;
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kShown) {
    for (MRegion* control :
         std::initializer_list<MRegion*>{statusText, titleText, percentText, bar, logo, headingText})
      Attach(this, control);
    if (window.leftButton) window.leftButton->SetVisible(false);
    if (window.rightButton) {
      window.rightButton->SetVisible(true);
      window.SetButtonLabel(window.rightButton, window.String(kDoneString));
      window.SetButtonEnabled(window.rightButton, false);
    }
    // The window's rectangles hold their width and height in right and bottom.
    window.targetRect = MRect{0, 0, window.targetRect.right, MInstallerWindow::kWindowHeight};
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kResized) {
    Resize();
    return true;
  }
  if (id == MInstallerWindow::kTickEventId && message == MInstallerWindow::kProgressTick) {
    Tick();
    return true;
  }
  if (id == MInstallerWindow::kRightButtonId && message == MButton::kClicked) {
    if (window.Host().GetFlags() & kUpdateChoiceFlag)
      window.Host().StoreUpdateChoice(radioGroup.selected ? radioGroup.selected->value : 0);
    if (callback) callback(this, kDone, 0, callbackContext);
    return true;
  }
  if (id == MInstallerWindow::kWindowEventId && message == MInstallerWindow::kHidden) {
    const bool choice = (window.Host().GetFlags() & kUpdateChoiceFlag) != 0;
    for (MRegion* control : std::initializer_list<MRegion*>{titleText, statusText, percentText, bar})
      if (control) control->Detach();
    if (choice) {
      for (MRegion* control : std::initializer_list<MRegion*>{bodyText, learnMoreLink})
        if (control) control->Detach();
      for (MRadioButton* radio : radios)
        if (radio) radio->Detach();
      for (MTextArea* label : radioLabels)
        if (label) label->Detach();
      if (headingText) headingText->Detach();
    }
    DetachAndDelete(titleText);
    DetachAndDelete(statusText);
    DetachAndDelete(percentText);
    DetachAndDelete(bar);
    if (choice) {
      DetachAndDelete(bodyText);
      DetachAndDelete(learnMoreLink);
      for (MRadioButton*& radio : radios) DetachAndDelete(radio);
      for (MTextArea*& label : radioLabels) DetachAndDelete(label);
      DetachAndDelete(headingText);
    }
    return true;
  }
  return false;
}

}  // namespace SASM
