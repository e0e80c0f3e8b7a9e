#pragma once
// A tip over a native control. It shows only while active; the tool is added
// and removed on a change of state alone, and follows the bounds while active.
#include <cstdint>
#include <memory>

#include "engine/MString.h"
#include "ui/ITooltip.h"
#include "ui/MSkinnedSection.h"

namespace SASM {

class MTooltipArea : public MSkinnedSection {
 public:
  // covered is the native window of the control the tip is for.
  MTooltipArea(MWindow* window, void* covered);
  ~MTooltipArea() override;
  void Layout() override;

  void SetText(const MString& value);
  void SetActive(bool on);

  MWindow* window;
  MString text;
  std::unique_ptr<ITooltip> tooltip;
  uint8_t active = 0;
};

}  // namespace SASM
