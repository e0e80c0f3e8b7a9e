#include "ui/win32/PngImage.h"

#include <zlib.h>

#include <cstdio>

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

}  // namespace

bool PngImage::Encode(int width, int height, const uint8_t* pixels, std::string& png) {
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

bool PngImage::Save(const std::wstring& path, int width, int height, const uint8_t* pixels) {
  std::string png;
  if (!Encode(width, height, pixels, png)) return false;
  FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) return false;
  const bool written = fwrite(png.data(), 1, png.size(), file) == png.size();
  return fclose(file) == 0 && written;
}

}  // namespace SASM
