#include "ui/win32/Win32WindowHost.h"

#include "ui/MRegion.h"
#include "ui/MWindow.h"
#include "ui/win32/GdiDrawSurface.h"
#include "ui/win32/MAccProxyObject.h"
#include "ui/win32/OleAccDllHelper.h"
#include "ui/win32/WindowCreationDllHelper.h"
#include "ui/win32/Win32WindowSystem.h"

namespace SASM {
namespace {

constexpr DWORD kExStyle = WS_EX_DLGMODALFRAME;
constexpr DWORD kStyle = 13107200;               // caption and system menu
constexpr DWORD kStyleWithMinimise = 13238272;   // the same with a minimise box
constexpr LRESULT kWantTab = DLGC_WANTTAB;

// The button class's own procedure, which native children fall back to.
WNDPROC g_buttonProc = nullptr;

// The same for every window system of the process: a global atom of one name.
ATOM g_accessibleAtom = 0;

LPCWSTR AccessibleProperty() { return MAKEINTATOM(g_accessibleAtom); }

MAccProxyObject* AccessibleOf(HWND child) {
  return g_accessibleAtom ? static_cast<MAccProxyObject*>(GetPropW(child, AccessibleProperty())) : nullptr;
}

LRESULT AnswerGetObject(HWND child, WPARAM wParam, LPARAM lParam) {
  MAccProxyObject* proxy = AccessibleOf(child);
  if (!proxy) return DefWindowProcW(child, WM_GETOBJECT, wParam, lParam);
  // Kept for the process: the marshalled object's clients call back through it.
  static const OleAccDllHelper oleAcc;
  auto lresultFromObject = oleAcc.LresultFromObject();
  if (!lresultFromObject) return 0;
  return lresultFromObject(__uuidof(IAccessible), wParam, static_cast<IAccessible*>(proxy));
}

// The child is going: clients that still hold its object get no more answers
// from the region, and the region's own reference goes.
void DisconnectAccessible(HWND child) {
  MAccProxyObject* proxy = AccessibleOf(child);
  if (!proxy) return;
  RemovePropW(child, AccessibleProperty());
  if (MRegion* region = proxy->region) {
    if (region->accProxy == proxy) region->accProxy = nullptr;
  }
  proxy->Disconnect();
}

// The region is going before its child: the child keeps neither the object
// nor the region.
void ReleaseAccessible(MRegion& region) {
  MAccProxyObject* proxy = region.accProxy;
  region.accProxy = nullptr;
  HWND child = static_cast<HWND>(region.nativeWindow);
  if (child && IsWindow(child) && AccessibleOf(child) == proxy) {
    RemovePropW(child, AccessibleProperty());
    SetWindowLongPtrW(child, GWLP_USERDATA, 0);
  }
  proxy->Disconnect();
}

bool ShiftDown() { return GetKeyState(VK_SHIFT) < 0; }

LPARAM PackPoint(POINT p) { return MAKELPARAM(static_cast<WORD>(p.x), static_cast<WORD>(p.y)); }

// A point of the child in the parent's client coordinates.
LPARAM ToParent(HWND child, HWND parent, int x, int y) {
  POINT p{x, y};
  MapWindowPoints(child, parent, &p, 1);
  return PackPoint(p);
}

}  // namespace

std::unique_ptr<Win32WindowHost> Win32WindowHost::Create(MWindow& window, Win32WindowSystem& system,
                                                         bool minimiseBox) {
  std::unique_ptr<Win32WindowHost> host(new Win32WindowHost(window, system));
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = system.Module();
  windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
  windowClass.lpszClassName = kClassName;
  // A second window finds the class already there; its atom stays 0.
  host->classAtom_ = RegisterClassExW(&windowClass);
  window.classAtom = host->classAtom_;

  WindowCreationDllHelper user32;
  auto createWindow = user32.CreateWindowExW();
  if (!createWindow) return nullptr;
  host->hwnd_ = createWindow(kExStyle, kClassName, L"", minimiseBox ? kStyleWithMinimise : kStyle, CW_USEDEFAULT,
                             CW_USEDEFAULT, 100, 100, nullptr, nullptr, system.Module(), host.get());
  if (!host->hwnd_) return nullptr;
  SetForegroundWindow(host->hwnd_);
  SetWindowPos(host->hwnd_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  HDC dc = GetDC(host->hwnd_);
  host->backDC_ = CreateCompatibleDC(dc);
  ReleaseDC(host->hwnd_, dc);
  window.backDC = host->backDC_;
  return host;
}

Win32WindowHost::~Win32WindowHost() {
  if (hwnd_) {
    KillTimer(hwnd_, 0);
    // The window object is going: late messages must not reach it.
    SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
    DestroyWindow(hwnd_);
  }
  if (backDC_) {
    if (originalBitmap_) SelectObject(backDC_, originalBitmap_);
    DeleteDC(backDC_);
  }
  if (backBitmap_) DeleteObject(backBitmap_);
  if (classAtom_) UnregisterClassW(kClassName, system_.Module());
}

Win32WindowHost* Win32WindowHost::Of(HWND hwnd) {
  return reinterpret_cast<Win32WindowHost*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

void Win32WindowHost::ApplyWindowRect(const MRect& rect) {
  RECT client{}, outer{};
  GetClientRect(hwnd_, &client);
  GetWindowRect(hwnd_, &outer);
  const int frameW = (outer.right - outer.left) - (client.right - client.left);
  const int frameH = (outer.bottom - outer.top) - (client.bottom - client.top);
  MoveWindow(hwnd_, rect.left, rect.top, rect.right + frameW, rect.bottom + frameH, TRUE);
  HDC dc = GetDC(hwnd_);
  HBITMAP bitmap = CreateCompatibleBitmap(dc, rect.right, rect.bottom);
  ReleaseDC(hwnd_, dc);
  HGDIOBJ old = SelectObject(backDC_, bitmap);
  if (!originalBitmap_) originalBitmap_ = old;
  if (backBitmap_) DeleteObject(backBitmap_);
  backBitmap_ = bitmap;
}

void Win32WindowHost::InvalidateRect(const MRect& rect) {
  RECT r{rect.left, rect.top, rect.right, rect.bottom};
  ::InvalidateRect(hwnd_, &r, FALSE);
}

void Win32WindowHost::SetTitle(const MString& title) {
  std::u16string text = title.ToU16();
  SetWindowTextW(hwnd_, reinterpret_cast<const wchar_t*>(text.c_str()));
}

void Win32WindowHost::Show(bool show) { ShowWindow(hwnd_, show ? SW_SHOW : SW_HIDE); }

void Win32WindowHost::BringToFront() {
  SetForegroundWindow(hwnd_);
  SetWindowPos(hwnd_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void Win32WindowHost::SetCursorKind(int32_t kind) {
  SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(kind == 1 ? 32649 : 32512)));
}

void Win32WindowHost::SetCapture() { ::SetCapture(hwnd_); }
void Win32WindowHost::ReleaseCapture() { ::ReleaseCapture(); }
void Win32WindowHost::PostQuit(int32_t code) { PostQuitMessage(code); }
void Win32WindowHost::StartTimer(uint32_t period) { SetTimer(hwnd_, 0, period, nullptr); }

void* Win32WindowHost::CreateNativeChild(MRegion& region, const MRect& absolute) {
  std::u16string text = region.label.ToU16();
  HWND child = CreateWindowExW(0, L"BUTTON", reinterpret_cast<const wchar_t*>(text.c_str()), kChildStyle,
                               absolute.left, absolute.top, absolute.Width(), absolute.Height(), hwnd_,
                               reinterpret_cast<HMENU>(static_cast<intptr_t>(region.controlId)), system_.Module(),
                               nullptr);
  if (!child) return nullptr;
  SetWindowLongPtrW(child, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&region));
  g_accessibleAtom = system_.AccessibleAtom();
  MRegion::releaseAccessible = &ReleaseAccessible;
  if (g_accessibleAtom) {
    auto* proxy = new MAccProxyObject(&region);
    proxy->AddRef();
    region.accProxy = proxy;
    SetPropW(child, AccessibleProperty(), proxy);
  }
  auto previous = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(child, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Win32WindowHost::ChildProc)));
  if (!g_buttonProc) g_buttonProc = previous;
  return child;
}

void Win32WindowHost::DestroyNativeChild(void* child) { DestroyWindow(static_cast<HWND>(child)); }

void Win32WindowHost::ShowNativeChild(void* child, bool show) {
  ShowWindow(static_cast<HWND>(child), show ? SW_SHOW : SW_HIDE);
}

void Win32WindowHost::MoveNativeChild(void* child, const MRect& a) {
  MoveWindow(static_cast<HWND>(child), a.left, a.top, a.Width(), a.Height(), FALSE);
}

void* Win32WindowHost::FirstNativeChild() { return GetWindow(hwnd_, GW_CHILD); }

void* Win32WindowHost::NativeNeighbour(void* child, NativeStep step) {
  static constexpr UINT kCommand[] = {GW_HWNDNEXT, GW_HWNDPREV, GW_HWNDFIRST, GW_HWNDLAST};
  return GetWindow(static_cast<HWND>(child), kCommand[static_cast<int>(step)]);
}

MRegion* Win32WindowHost::RegionOfNative(void* child) {
  HWND hwnd = static_cast<HWND>(child);
  // Only our own children hold a region in their user data.
  if (!hwnd || GetWindowLongPtrW(hwnd, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(&Win32WindowHost::ChildProc))
    return nullptr;
  return reinterpret_cast<MRegion*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

bool Win32WindowHost::HasPlatformFocus(void* child) { return GetFocus() == static_cast<HWND>(child); }

void Win32WindowHost::SetPlatformFocus(void* child) { SetFocus(child ? static_cast<HWND>(child) : hwnd_); }

void Win32WindowHost::Paint() {
  PAINTSTRUCT ps;
  BeginPaint(hwnd_, &ps);
  const RECT& r = ps.rcPaint;
  if (r.right != 0 && r.bottom != 0) {
    HDC dc = GetDC(hwnd_);
    GdiDrawSurface surface(backDC_, system_.AlphaBlendEntry());
    window_.OnPaint(MRect{r.left, r.top, r.right, r.bottom}, surface);
    BitBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, backDC_, 0, 0, SRCCOPY);
    ReleaseDC(hwnd_, dc);
  }
  EndPaint(hwnd_, &ps);
}

LRESULT CALLBACK Win32WindowHost::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) {
    auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    return 0;
  }
  if (message == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  Win32WindowHost* host = Of(hwnd);
  if (!host) return DefWindowProcW(hwnd, message, wParam, lParam);
  MWindow& window = host->window_;
  switch (message) {
    case WM_ACTIVATE:
      return 0;
    case WM_KILLFOCUS:
      window.SetCursorKind(0);
      break;
    case WM_PAINT:
      host->Paint();
      return 0;
    case WM_CLOSE:
      window.OnClose();
      return 1;
    case WM_DRAWITEM:
      return 1;
    case WM_GETDLGCODE:
      return kWantTab;
    case WM_KEYDOWN:
      if (wParam == VK_TAB) {
        window.OnWindowTab(ShiftDown());
        return 0;
      }
      break;
    case WM_KEYUP:
      OutputDebugStringA("window key up\n");
      break;
    case WM_TIMER:
      window.OnTimer();
      return 1;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
      window.OnMouse(message, static_cast<uint32_t>(lParam));
      return 0;
    default:
      if (message >= MWindow::kUserBase && message <= MWindow::kUserLast)
        window.HandleEvent(static_cast<int32_t>(static_cast<uint32_t>(wParam)),
                           static_cast<int32_t>(message - MWindow::kUserBase), lParam);
      break;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

LRESULT CALLBACK Win32WindowHost::ChildProc(HWND child, UINT message, WPARAM wParam, LPARAM lParam) {
  HWND parent = GetParent(child);
  if (message >= WM_USER) return WindowProc(parent, message, wParam, lParam);
  if (message == WM_NCDESTROY) DisconnectAccessible(child);
  const bool press = wParam == VK_RETURN || wParam == VK_SPACE;
  switch (message) {
    case WM_GETOBJECT:
      return AnswerGetObject(child, wParam, lParam);
    case WM_GETDLGCODE:
      return kWantTab;
    case WM_KEYDOWN:
      if (wParam == VK_TAB) {
        if (Win32WindowHost* host = Of(parent)) host->window_.OnChildTab(child, ShiftDown());
        return 0;
      }
      // Enter and Space press the control where a pointer would, just inside its corner.
      if (press) return WindowProc(parent, WM_LBUTTONDOWN, 1, ToParent(child, parent, 2, 2));
      return WindowProc(parent, message, wParam, lParam);
    case WM_KEYUP:
      if (wParam == VK_TAB) return 0;
      if (press) return WindowProc(parent, WM_LBUTTONUP, 0, ToParent(child, parent, 2, 2));
      return WindowProc(parent, message, wParam, lParam);
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
      return WindowProc(parent, message, wParam,
                        ToParent(child, parent, static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))));
    // Never painted by itself: the region under it is drawn by the parent.
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      return DefWindowProcW(child, message, wParam, lParam);
    default:
      return g_buttonProc ? CallWindowProcW(g_buttonProc, child, message, wParam, lParam)
                          : DefWindowProcW(child, message, wParam, lParam);
  }
}

}  // namespace SASM
