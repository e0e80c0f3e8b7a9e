#include "ui/win32/Win32WindowSystem.h"

#include <string>

#include "engine/win32/ScopedLibrary.h"
#include "ui/LocaleMetrics.h"
#include "ui/MWindow.h"
#include "ui/win32/GdiTextCanvas.h"
#include "ui/win32/Win32Tooltip.h"
#include "ui/win32/Win32WindowHost.h"

namespace SASM {

Win32WindowSystem::Win32WindowSystem(HostCallbacks* host, HMODULE module)
    : host_(host), module_(module), accessibleAtom_(GlobalAddAtomW(kAccessibleProperty)) {}

Win32WindowSystem::~Win32WindowSystem() {
  if (accessibleAtom_) GlobalDeleteAtom(accessibleAtom_);
  for (auto& image : images_) Win32ImageLoader::Free(image);
}

std::unique_ptr<IWindowHost> Win32WindowSystem::CreateWindowHost(MWindow& window, bool minimiseBox) {
  return Win32WindowHost::Create(window, *this, minimiseBox);
}

void Win32WindowSystem::PostWindowMessage(void* handle, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  ::PostMessageW(static_cast<HWND>(handle), message, wParam, lParam);
}

int32_t Win32WindowSystem::RunMessageLoop(MWindow* window) {
  // The loop runs only where the ActiveX hosting window class can be set up.
  char directory[MAX_PATH];
  UINT length = GetSystemDirectoryA(directory, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return 0;
  std::string path(directory, length);
  path += "\\atl.dll";
  ScopedLibrary atl(LoadLibraryA(path.c_str()));
  using InitFn = BOOL(WINAPI*)();
  auto init = atl ? reinterpret_cast<InitFn>(reinterpret_cast<void*>(GetProcAddress(atl.get(), "AtlAxWinInit")))
                  : nullptr;
  if (!atl || !init || !init()) return static_cast<int32_t>(GetLastError());

  HWND handle = window ? static_cast<HWND>(window->handle) : nullptr;
  if (handle) {
    RECT r{window->rect.left, window->rect.top, window->rect.right, window->rect.bottom};
    InvalidateRect(handle, &r, FALSE);
  }
  MSG message{};
  // -1 is an error that would repeat for ever; it ends the loop like the quit message.
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  if (handle) ShowWindow(handle, SW_HIDE);
  return static_cast<int32_t>(message.wParam);
}

void* Win32WindowSystem::LoadSkinImage(ImageForm form, int32_t id) {
  Win32ImageLoader::Image image;
  if (!Win32ImageLoader::Load(module_, host_, form, id, image)) return nullptr;
  images_.push_back(image);
  return image.dc;
}

}  // namespace SASM

namespace SASM {

std::unique_ptr<ITextCanvas> Win32WindowSystem::CreateTextCanvas(void* backDC, int32_t size) {
  const LocaleMetrics& metrics = LocaleMetrics::For(GetThreadLocale());
  return std::make_unique<GdiTextCanvas>(static_cast<HDC>(backDC), metrics.fontFace, metrics.FontSize(size));
}

std::unique_ptr<ITooltip> Win32WindowSystem::CreateTooltip(void* parent, void* covered) {
  return Win32Tooltip::Create(static_cast<HWND>(parent), static_cast<HWND>(covered), module_);
}

}  // namespace SASM
