#pragma once
// Pictures of what the installer draws, as PNG: the demo's screenshots, the
// panel gallery and the string sheet all write them the same way.
#include <cstdint>
#include <string>

namespace SASM {

class PngImage {
 public:
  // Top-down 32-bit pixels (blue, green, red, unused) as an RGB PNG; false when compression fails.
  static bool Encode(int width, int height, const uint8_t* pixels, std::string& png);
  // Encode, then the whole file at path.
  static bool Save(const std::wstring& path, int width, int height, const uint8_t* pixels);
};

}  // namespace SASM
