#include "ui/win32/Win32Tooltip.h"

namespace SASM {
namespace {

HMODULE LoadCommonControls() {
  wchar_t directory[MAX_PATH];
  UINT length = GetSystemDirectoryW(directory, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  std::wstring path(directory, length);
  path += L"\\comctl32.dll";
  HMODULE library = LoadLibraryW(path.c_str());
  if (!library) return nullptr;
  using InitFn = BOOL(WINAPI*)(const INITCOMMONCONTROLSEX*);
  auto init = reinterpret_cast<InitFn>(reinterpret_cast<void*>(GetProcAddress(library, "InitCommonControlsEx")));
  INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_BAR_CLASSES};
  if (init) init(&classes);
  return library;
}

}  // namespace

std::unique_ptr<Win32Tooltip> Win32Tooltip::Create(HWND parent, HWND covered, HMODULE module) {
  std::unique_ptr<Win32Tooltip> tooltip(new Win32Tooltip());
  tooltip->comctl_.reset(LoadCommonControls());
  tooltip->tip_ = CreateWindowExW(kExStyle, L"tooltips_class32", nullptr, kStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                                  CW_USEDEFAULT, CW_USEDEFAULT, parent, nullptr, module, nullptr);
  if (!tooltip->tip_) return nullptr;
  SendMessageW(tooltip->tip_, TTM_SETDELAYTIME, TTDT_INITIAL, MAKELPARAM(kInitialDelay, 0));
  SendMessageW(tooltip->tip_, TTM_SETDELAYTIME, TTDT_AUTOPOP, MAKELPARAM(kAutoPopDelay, 0));
  TOOLINFOW& info = tooltip->toolInfo_;
  info.cbSize = sizeof(TOOLINFOW);
  info.uFlags = kToolFlags;
  info.hwnd = covered;
  info.hinst = module;
  info.lpszText = const_cast<wchar_t*>(L"");
  return tooltip;
}

Win32Tooltip::~Win32Tooltip() {
  if (tip_) DestroyWindow(tip_);
}

void Win32Tooltip::SetText(const MString& text) {
  text_ = text.ToU16();
  toolInfo_.lpszText = reinterpret_cast<wchar_t*>(text_.data());
  SendMessageW(tip_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&toolInfo_));
}

void Win32Tooltip::AddTool(const MRect& r) {
  toolInfo_.rect = RECT{r.left, r.top, r.right, r.bottom};
  SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&toolInfo_));
}

void Win32Tooltip::DeleteTool() { SendMessageW(tip_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&toolInfo_)); }

void Win32Tooltip::MoveTool(const MRect& r) {
  toolInfo_.rect = RECT{r.left, r.top, r.right, r.bottom};
  SendMessageW(tip_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&toolInfo_));
}

}  // namespace SASM
