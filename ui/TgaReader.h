#pragma once
// Reads the skin images: TGA by a handful of header fields, decoded into
// 32-bit pixels in the file's row order (bottom row first).
#include <cstddef>
#include <cstdint>

namespace SASM {

class TgaReader {
 public:
  static constexpr size_t kHeaderSize = 18;

  struct Header {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t depth = 0;  // bits per pixel
    bool runLength = false;
  };

  // False only when the data is shorter than the header.
  static bool ReadHeader(const uint8_t* data, size_t size, Header& header);

  // Fills pixels (pixelCount entries of blue, green, red, alpha) from data.
  // Input that ends early leaves the rest as it was; a run that passes the
  // end of pixels is cut there.
  static void Decode(const uint8_t* data, size_t size, const Header& header, uint8_t* pixels, size_t pixelCount);
};

}  // namespace SASM
