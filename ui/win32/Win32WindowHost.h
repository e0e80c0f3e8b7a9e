#pragma once
// One top-level window of the toolkit on user32: its class, procedure, back
// buffer and timer, and the native "BUTTON" children that carry focus.
#include <memory>

#include "engine/win32/WindowsApi.h"
#include "ui/IWindowHost.h"

namespace SASM {

class MWindow;
class Win32WindowSystem;

class Win32WindowHost : public IWindowHost {
 public:
  static constexpr wchar_t kClassName[] = L"CorvaLumenPlayerInstaller";
  static constexpr DWORD kChildStyle = 1342242827;  // child, visible, tab stop, owner-drawn button

  // Null when the window cannot be created.
  static std::unique_ptr<Win32WindowHost> Create(MWindow& window, Win32WindowSystem& system, bool minimiseBox);
  ~Win32WindowHost() override;

  void* Handle() const override { return hwnd_; }
  void ApplyWindowRect(const MRect& rect) override;
  void InvalidateRect(const MRect& rect) override;
  void SetTitle(const MString& title) override;
  void Show(bool show) override;
  void BringToFront() override;
  void SetCursorKind(int32_t kind) override;
  void SetCapture() override;
  void ReleaseCapture() override;
  void PostQuit(int32_t code) override;
  void StartTimer(uint32_t periodMilliseconds) override;

  void* CreateNativeChild(MRegion& region, const MRect& absolute) override;
  void DestroyNativeChild(void* child) override;
  void ShowNativeChild(void* child, bool show) override;
  void MoveNativeChild(void* child, const MRect& absolute) override;
  void* FirstNativeChild() override;
  void* NativeNeighbour(void* child, NativeStep step) override;
  MRegion* RegionOfNative(void* child) override;
  bool HasPlatformFocus(void* child) override;
  void SetPlatformFocus(void* child) override;

  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK ChildProc(HWND child, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  Win32WindowHost(MWindow& window, Win32WindowSystem& system) : window_(window), system_(system) {}
  static Win32WindowHost* Of(HWND hwnd);
  void Paint();

  MWindow& window_;
  Win32WindowSystem& system_;
  HWND hwnd_ = nullptr;
  ATOM classAtom_ = 0;
  HDC backDC_ = nullptr;
  HBITMAP backBitmap_ = nullptr;
  HGDIOBJ originalBitmap_ = nullptr;
};

}  // namespace SASM
