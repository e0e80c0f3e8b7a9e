#include "ui/win32/Win32ImageLoader.h"

#include <cstring>
#include <vector>

#include "engine/HostCallbacks.h"
#include "ui/TgaReader.h"

namespace SASM {

bool Win32ImageLoader::Load(HMODULE module, HostCallbacks* host, ImageForm form, int32_t id, Image& image) {
  const wchar_t* type = form == ImageForm::kPlain ? L"IMG" : form == ImageForm::kCompressed ? L"LZMG" : nullptr;
  if (!type) return false;
  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), type);
  if (!resource) return false;
  HGLOBAL loaded = LoadResource(module, resource);
  const auto* bytes = static_cast<const uint8_t*>(loaded ? LockResource(loaded) : nullptr);
  size_t size = SizeofResource(module, resource);
  if (!bytes) return false;

  std::vector<uint8_t> unpacked;
  if (form == ImageForm::kCompressed) {
    uint32_t unpackedSize = 0;
    if (size < 4 || !host) return false;
    std::memcpy(&unpackedSize, bytes, 4);
    if (unpackedSize == 0 || unpackedSize > kMaxUnpackedSize) return false;
    unpacked.resize(unpackedSize);
    if (!host->DecompressImage(unpacked.data(), unpackedSize, bytes + 4, static_cast<uint32_t>(size - 4))) return false;
    bytes = unpacked.data();
    size = unpacked.size();
  }

  // Shorter than its header there is nothing to size a bitmap by.
  TgaReader::Header header;
  if (!TgaReader::ReadHeader(bytes, size, header)) return false;

  HDC screen = GetDC(nullptr);
  image.dc = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  // The header with one colour entry: biSize 44.
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFO);
  info.bmiHeader.biWidth = static_cast<LONG>(header.width);
  info.bmiHeader.biHeight = static_cast<LONG>(header.height);  // positive: bottom row first, as stored
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  image.bitmap = CreateDIBSection(image.dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (image.bitmap && bits) {
    TgaReader::Decode(bytes, size, header, static_cast<uint8_t*>(bits),
                      static_cast<size_t>(header.width) * header.height);
    GdiFlush();
    image.original = SelectObject(image.dc, image.bitmap);
  }
  return true;
}

void Win32ImageLoader::Free(Image& image) {
  if (image.original) SelectObject(image.dc, image.original);
  if (image.bitmap) DeleteObject(image.bitmap);
  if (image.dc) DeleteDC(image.dc);
  image = Image{};
}

}  // namespace SASM
