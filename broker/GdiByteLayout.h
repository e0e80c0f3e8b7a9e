#pragma once
// The byte layouts that carry GDI's structures through the print relay's
// automation arrays, and the lengths each one must have. Little-endian wire
// formats, exactly the platform's published structures.
#include <cstdint>

#include "broker/PrintRelayPlatform.h"

namespace SASM {

class GdiByteLayout {
 public:
  static constexpr uint32_t kRectBytes = 16;
  // BITMAPINFOHEADER and what follows it: one colour for the plain fill, two
  // for the transparent one. Each fill refuses the other's length.
  static constexpr uint32_t kBitmapInfoHeaderBytes = 40;
  static constexpr uint32_t kBitmapFillHeaderBytes = 44;
  static constexpr uint32_t kTransparentFillHeaderBytes = 48;
  static constexpr uint32_t kLogFontBytes = PrintRelayPlatform::kLogFontBytes;
  static constexpr uint32_t kXformBytes = PrintRelayPlatform::kXformBytes;
  static constexpr uint32_t kPointBytes = 8;
  // The text calls' character limit.
  static constexpr uint32_t kTextLimit = 0x2000;
  // ETO_PDY: a vertical spacing value follows each horizontal one.
  static constexpr uint32_t kPdyOption = 0x2000;
  // The most of a BITMAPINFO that GDI reads for a 40-byte header: three
  // masks and 256 colours.
  static constexpr uint32_t kPaddedHeaderBytes = kBitmapInfoHeaderBytes + 12 + 256 * 4;

  struct BitmapHeader {
    uint32_t size = 0;
    int32_t width = 0;
    int32_t height = 0;
    uint16_t bitCount = 0;
    uint32_t compression = 0;
    uint32_t sizeImage = 0;
    uint32_t colorsUsed = 0;
  };

  // `bytes` holds kRectBytes.
  static GdiRect ReadRect(const uint8_t* bytes);
  // `bytes` holds kBitmapInfoHeaderBytes.
  static BitmapHeader ReadBitmapHeader(const uint8_t* bytes);

  // (biBitCount / 8) x biWidth x |biHeight|, reckoned in signed 32 bits as
  // the fills compare it: it may wrap, and bit counts below 8 make it 0.
  static int32_t PixelBound(const BitmapHeader& header);
  static bool PixelsWithinBound(const BitmapHeader& header, uint32_t pixelLength) {
    return PixelBound(header) <= static_cast<int32_t>(pixelLength);
  }
  // Whether StretchDIBits stays inside a header padded to kPaddedHeaderBytes
  // and `pixelLength` bytes of pixels. The bound above lets through headers
  // for which GDI would read further (padded rows, small bit counts, a
  // wrapped product); those are not drawn.
  static bool StaysInsidePixels(const BitmapHeader& header, uint32_t pixelLength);

  // 8 x count, in 32 bits.
  static uint32_t CubicBytes(uint32_t count) { return count * kPointBytes; }
  // Whether PolyBezierTo's points really fit in CubicBytes: false when the product wrapped.
  static bool CubicBytesExact(uint32_t count) { return count <= UINT32_MAX / kPointBytes; }
  // (count + 1) characters of `charSize` bytes, the terminator included.
  static uint32_t StringBytes(uint32_t count, uint32_t charSize) { return (count + 1) * charSize; }
  // 4 x (count - 1), doubled with ETO_PDY, reckoned unsigned: a count of 0 wraps.
  static uint32_t SpacingBytes(uint32_t count, uint32_t options);
  // How many spacing values GDI reads for `count` characters.
  static uint32_t SpacingValuesRead(uint32_t count, uint32_t options) {
    return (options & kPdyOption) ? count * 2 : count;
  }
};

}  // namespace SASM
