#pragma once
// The real window system under MorphUI: user32 and GDI, the blending entry of
// msimg32, the module's image resources and the message pump.
#include <memory>
#include <vector>

#include "engine/win32/WindowsApi.h"
#include "ui/IWindowSystem.h"
#include "ui/win32/Msimg32DllHelper.h"
#include "ui/win32/Win32ImageLoader.h"

namespace SASM {

class HostCallbacks;

class Win32WindowSystem : public IWindowSystem {
 public:
  // The property of a native child that holds its accessible object.
  static constexpr wchar_t kAccessibleProperty[] = L"ACC_PROP";

  // module is where the window class and images belong.
  Win32WindowSystem(HostCallbacks* host, HMODULE module);
  ~Win32WindowSystem() override;

  std::unique_ptr<IWindowHost> CreateWindowHost(MWindow& window, bool minimiseBox) override;
  void PostWindowMessage(void* handle, uint32_t message, uintptr_t wParam, intptr_t lParam) override;
  int32_t RunMessageLoop(MWindow* window) override;
  void* LoadSkinImage(ImageForm form, int32_t id) override;
  // Fonts by the thread's locale.
  std::unique_ptr<ITextCanvas> CreateTextCanvas(void* backDC, int32_t size) override;
  std::unique_ptr<ITooltip> CreateTooltip(void* parent, void* covered) override;
  uint32_t ThreadLocale() override { return GetThreadLocale(); }

  Msimg32DllHelper::AlphaBlendFn AlphaBlendEntry() const { return msimg_.AlphaBlend(); }
  HMODULE Module() const { return module_; }
  ATOM AccessibleAtom() const { return accessibleAtom_; }

 private:
  HostCallbacks* host_;
  HMODULE module_;
  ATOM accessibleAtom_;
  Msimg32DllHelper msimg_;
  std::vector<Win32ImageLoader::Image> images_;
};

}  // namespace SASM
