#include "ui/TgaReader.h"

#include <cstring>

namespace SASM {

bool TgaReader::ReadHeader(const uint8_t* data, size_t size, Header& header) {
  if (size < kHeaderSize) return false;
  // The identifier and colour map lengths are not read: the pixels start right after the header.
  header.runLength = (data[2] & 8) != 0;
  header.width = data[12] | (data[13] << 8);
  header.height = data[14] | (data[15] << 8);
  header.depth = data[16];
  return true;
}

namespace {

class PixelSource {
 public:
  PixelSource(const uint8_t* data, size_t size, uint32_t bytesPerPixel)
      : at_(data), end_(data + size), bytesPerPixel_(bytesPerPixel) {}

  bool Byte(uint8_t& value) {
    if (at_ >= end_) return false;
    value = *at_++;
    return true;
  }

  // One pixel as blue, green, red, alpha. A 32-bit pixel is taken as stored
  // (premultiplied); any other depth is blue, green, red and gains alpha 255.
  bool Pixel(uint8_t out[4]) {
    const size_t need = bytesPerPixel_ == 4 ? 4 : (bytesPerPixel_ > 3 ? bytesPerPixel_ : 3);
    if (static_cast<size_t>(end_ - at_) < need) return false;
    if (bytesPerPixel_ == 4) {
      std::memcpy(out, at_, 4);
    } else {
      out[0] = at_[0];
      out[1] = at_[1];
      out[2] = at_[2];
      out[3] = 255;
    }
    at_ += bytesPerPixel_;
    return true;
  }

  // The uncompressed 32-bit path keeps only each pixel's first byte.
  bool FirstByteOnly(uint8_t out[4]) {
    if (static_cast<size_t>(end_ - at_) < 4) return false;
    out[0] = at_[0];
    out[1] = out[2] = out[3] = 0;
    at_ += 4;
    return true;
  }

 private:
  const uint8_t* at_;
  const uint8_t* end_;
  uint32_t bytesPerPixel_;
};

}  // namespace

void TgaReader::Decode(const uint8_t* data, size_t size, const Header& header, uint8_t* pixels, size_t pixelCount) {
  if (size < kHeaderSize) return;
  const uint32_t bytesPerPixel = header.depth / 8;
  PixelSource source(data + kHeaderSize, size - kHeaderSize, bytesPerPixel);
  const size_t total = static_cast<size_t>(header.width) * header.height;
  const size_t limit = total < pixelCount ? total : pixelCount;
  uint8_t pixel[4];

  if (!header.runLength) {
    for (size_t i = 0; i < limit; ++i) {
      const bool ok = bytesPerPixel == 4 ? source.FirstByteOnly(pixel) : source.Pixel(pixel);
      if (!ok) return;
      std::memcpy(pixels + i * 4, pixel, 4);
    }
    return;
  }

  size_t written = 0;
  while (written < total) {
    uint8_t packet;
    if (!source.Byte(packet)) return;
    const size_t count = (packet & 127) + 1;
    const bool run = (packet & 128) != 0;
    if (run && !source.Pixel(pixel)) return;
    for (size_t i = 0; i < count; ++i) {
      if (!run && !source.Pixel(pixel)) return;
      // A run may pass the total: what lies beyond the buffer is dropped.
      if (written < limit) std::memcpy(pixels + written * 4, pixel, 4);
      ++written;
    }
  }
}

}  // namespace SASM
