#include "host/win32/ClientAreaPng.h"

#include <cstdio>
#include <string>

#include "engine/win32/ScopedHandle.h"
#include "ui/win32/PngImage.h"

namespace SASM {

bool SaveClientAreaPng(HWND window, const std::wstring& path) {
  RECT client{};
  if (!GetClientRect(window, &client) || client.right <= 0 || client.bottom <= 0) return false;
  const int width = client.right;
  const int height = client.bottom;
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HDC memory = CreateCompatibleDC(nullptr);
  if (!memory) return false;
  HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  bool ok = bitmap != nullptr;
  std::string png;
  if (ok) {
    HGDIOBJ old = SelectObject(memory, bitmap);
    HDC dc = GetDC(window);
    ok = dc && BitBlt(memory, 0, 0, width, height, dc, 0, 0, SRCCOPY);
    if (dc) ReleaseDC(window, dc);
    GdiFlush();
    ok = ok && PngImage::Encode(width, height, static_cast<const uint8_t*>(bits), png);
    SelectObject(memory, old);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  if (!ok) return false;
  ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  DWORD written = 0;
  return WriteFile(file.get(), png.data(), static_cast<DWORD>(png.size()), &written, nullptr) &&
         written == png.size();
}

}  // namespace SASM
