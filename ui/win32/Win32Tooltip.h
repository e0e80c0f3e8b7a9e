#pragma once
// A "tooltips_class32" window over one native control, with the common
// controls library loaded from the system directory for as long as it lives.
#include <memory>
#include <string>

#include "engine/win32/ScopedLibrary.h"
#include "engine/win32/WindowsApi.h"
#include "ui/ITooltip.h"

#include <commctrl.h>

namespace SASM {

class Win32Tooltip : public ITooltip {
 public:
  static constexpr DWORD kExStyle = WS_EX_TOPMOST;
  static constexpr DWORD kStyle = 2147483649u;  // popup, always tip
  static constexpr UINT kToolFlags = TTF_SUBCLASS | TTF_CENTERTIP;
  static constexpr int kInitialDelay = 100;
  static constexpr int kAutoPopDelay = 30000;

  // Null when the tip window cannot be made.
  static std::unique_ptr<Win32Tooltip> Create(HWND parent, HWND covered, HMODULE module);
  ~Win32Tooltip() override;

  void* Handle() const override { return tip_; }
  void SetText(const MString& text) override;
  void AddTool(const MRect& rect) override;
  void DeleteTool() override;
  void MoveTool(const MRect& rect) override;

 private:
  Win32Tooltip() = default;

  ScopedLibrary comctl_;
  HWND tip_ = nullptr;
  TOOLINFOW toolInfo_{};
  // The tool's text lives here for as long as the tool does.
  std::u16string text_;
};

}  // namespace SASM
