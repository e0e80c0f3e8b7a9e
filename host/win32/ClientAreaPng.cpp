#include "host/win32/ClientAreaPng.h"

#include <zlib.h>

#include <cstdio>
#include <string>

#include "engine/win32/ScopedHandle.h"

namespace SASM {
namespace {

void PutBig32(std::string& out, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>((value >> shift) & 0xFF));
}

void PutChunk(std::string& png, const char* type, const std::string& data) {
  PutBig32(png, static_cast<uint32_t>(data.size()));
  std::string body = std::string(type, 4) + data;
  png += body;
  PutBig32(png, static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(body.data()), body.size())));
}

// Top-down pixels of blue, green, red and an unused byte as an RGB PNG.
bool EncodePng(int width, int height, const uint8_t* pixels, std::string& png) {
  std::string raw;
  raw.reserve(static_cast<size_t>(height) * (width * 3 + 1));
  for (int y = 0; y < height; ++y) {
    raw.push_back(0);  // no filter
    for (int x = 0; x < width; ++x) {
      const uint8_t* p = pixels + (static_cast<size_t>(y) * width + x) * 4;
      raw += {static_cast<char>(p[2]), static_cast<char>(p[1]), static_cast<char>(p[0])};
    }
  }
  uLongf packedSize = compressBound(raw.size());
  std::string packed(packedSize, '\0');
  if (compress2(reinterpret_cast<Bytef*>(packed.data()), &packedSize, reinterpret_cast<const Bytef*>(raw.data()),
                raw.size(), 9) != Z_OK)
    return false;
  packed.resize(packedSize);
  std::string header;
  PutBig32(header, static_cast<uint32_t>(width));
  PutBig32(header, static_cast<uint32_t>(height));
  header += {8, 2, 0, 0, 0};  // 8 bits, truecolour, deflate, no filter, no interlace
  png = "\x89PNG\r\n\x1a\n";
  PutChunk(png, "IHDR", header);
  PutChunk(png, "IDAT", packed);
  PutChunk(png, "IEND", "");
  return true;
}

}  // namespace

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
    ok = ok && EncodePng(width, height, static_cast<const uint8_t*>(bits), png);
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
