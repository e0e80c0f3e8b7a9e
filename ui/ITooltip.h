#pragma once
// One platform tooltip over one native control: its text and the one tool
// that shows it over a rectangle of the control.
#include "engine/MString.h"
#include "ui/MRect.h"

namespace SASM {

class ITooltip {
 public:
  virtual ~ITooltip() = default;
  virtual void* Handle() const = 0;
  virtual void SetText(const MString& text) = 0;
  virtual void AddTool(const MRect& rect) = 0;
  virtual void DeleteTool() = 0;
  virtual void MoveTool(const MRect& rect) = 0;
};

}  // namespace SASM
