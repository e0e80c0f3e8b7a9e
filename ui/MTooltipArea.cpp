#include "ui/MTooltipArea.h"

#include "ui/MWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

MTooltipArea::MTooltipArea(MWindow* w, void* covered) : window(w) {
  drawFlags = kNoDraw;
  if (w && w->morph) tooltip = w->morph->System().CreateTooltip(w->handle, covered);
}

MTooltipArea::~MTooltipArea() = default;

void MTooltipArea::SetText(const MString& value) {
  text = value;
  if (tooltip) tooltip->SetText(text);
}

void MTooltipArea::SetActive(bool on) {
  if ((active != 0) == on) return;
  active = on ? 1 : 0;
  if (!tooltip) return;
  if (on)
    tooltip->AddTool(bounds);
  else
    tooltip->DeleteTool();
}

void MTooltipArea::Layout() {
  if (active && tooltip) tooltip->MoveTool(bounds);
}

}  // namespace SASM
