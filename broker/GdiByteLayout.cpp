#include "broker/GdiByteLayout.h"

namespace SASM {
namespace {

uint32_t U32(const uint8_t* bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

int32_t I32(const uint8_t* bytes) { return static_cast<int32_t>(U32(bytes)); }

constexpr uint32_t kRgb = 0;
constexpr uint32_t kRle8 = 1;
constexpr uint32_t kRle4 = 2;
constexpr uint32_t kBitFields = 3;

}  // namespace

GdiRect GdiByteLayout::ReadRect(const uint8_t* bytes) {
  return {I32(bytes), I32(bytes + 4), I32(bytes + 8), I32(bytes + 12)};
}

GdiByteLayout::BitmapHeader GdiByteLayout::ReadBitmapHeader(const uint8_t* bytes) {
  BitmapHeader header;
  header.size = U32(bytes);
  header.width = I32(bytes + 4);
  header.height = I32(bytes + 8);
  header.bitCount = static_cast<uint16_t>(bytes[14] | bytes[15] << 8);
  header.compression = U32(bytes + 16);
  header.sizeImage = U32(bytes + 20);
  header.colorsUsed = U32(bytes + 32);
  return header;
}

int32_t GdiByteLayout::PixelBound(const BitmapHeader& header) {
  // Unsigned arithmetic wraps as the 32-bit product does, without overflow.
  uint32_t height = header.height < 0 ? 0u - static_cast<uint32_t>(header.height) : static_cast<uint32_t>(header.height);
  uint32_t product = static_cast<uint32_t>(header.bitCount / 8) * static_cast<uint32_t>(header.width) * height;
  return static_cast<int32_t>(product);
}

bool GdiByteLayout::StaysInsidePixels(const BitmapHeader& header, uint32_t pixelLength) {
  // A longer header (V4, V5) would be read past the padded copy.
  if (header.size != kBitmapInfoHeaderBytes || header.colorsUsed > 256) return false;
  if (header.compression == kRle8 || header.compression == kRle4) {
    if (header.bitCount != (header.compression == kRle8 ? 8 : 4)) return false;
    return header.sizeImage <= pixelLength;
  }
  switch (header.bitCount) {
    case 1:
    case 4:
    case 8:
    case 24:
      if (header.compression != kRgb) return false;
      break;
    case 16:
    case 32:
      if (header.compression != kRgb && header.compression != kBitFields) return false;
      break;
    default: return false;
  }
  if (header.width <= 0 || header.height == 0) return false;
  uint64_t height = header.height < 0 ? 0 - static_cast<int64_t>(header.height) : header.height;
  // Rows are padded to whole 32-bit words.
  uint64_t stride = (static_cast<uint64_t>(header.width) * header.bitCount + 31) / 32 * 4;
  return stride * height <= pixelLength;
}

uint32_t GdiByteLayout::SpacingBytes(uint32_t count, uint32_t options) {
  uint32_t bytes = 4 * (count - 1);
  return (options & kPdyOption) ? bytes * 2 : bytes;
}

}  // namespace SASM
