// The print relay's byte layouts: the lengths that are reckoned in 32 bits and
// may wrap, and the pixel reads that the relay lets through to GDI.
#include <gtest/gtest.h>

#include <cstring>

#include "broker/GdiByteLayout.h"

using namespace SASM;
using Header = GdiByteLayout::BitmapHeader;

namespace {

Header Bitmap(int32_t width, int32_t height, uint16_t bitCount, uint32_t compression = 0, uint32_t sizeImage = 0) {
  Header header;
  header.size = 40;
  header.width = width;
  header.height = height;
  header.bitCount = bitCount;
  header.compression = compression;
  header.sizeImage = sizeImage;
  return header;
}

}  // namespace

TEST(GdiByteLayoutTest, WireStructuresReadLittleEndianAtTheirOffsets) {
  const uint8_t rect[16] = {1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0, 1, 0, 0, 0, 0, 0, 0x80};
  GdiRect read = GdiByteLayout::ReadRect(rect);
  EXPECT_EQ(read.left, 1);
  EXPECT_EQ(read.top, -2);
  EXPECT_EQ(read.right, 256);
  EXPECT_EQ(read.bottom, INT32_MIN);

  uint8_t bytes[40] = {40};
  int32_t width = 3, height = -5;
  std::memcpy(bytes + 4, &width, 4);
  std::memcpy(bytes + 8, &height, 4);
  bytes[14] = 24;
  bytes[32] = 7;
  Header header = GdiByteLayout::ReadBitmapHeader(bytes);
  EXPECT_EQ(header.size, 40u);
  EXPECT_EQ(header.width, 3);
  EXPECT_EQ(header.height, -5);
  EXPECT_EQ(header.bitCount, 24);
  EXPECT_EQ(header.colorsUsed, 7u);
}

TEST(GdiByteLayoutTest, PixelBoundIsWholeBytesPerPixelTimesAbsoluteHeightInSigned32Bits) {
  EXPECT_EQ(GdiByteLayout::PixelBound(Bitmap(3, 2, 24)), 18);
  EXPECT_EQ(GdiByteLayout::PixelBound(Bitmap(3, -2, 24)), 18);
  // Below 8 bits a pixel is no whole byte: the bound is 0 and any array passes.
  EXPECT_EQ(GdiByteLayout::PixelBound(Bitmap(1000, 1000, 4)), 0);
  EXPECT_TRUE(GdiByteLayout::PixelsWithinBound(Bitmap(1000, 1000, 1), 0));
  // A product past 2^31 turns negative and passes too.
  EXPECT_LT(GdiByteLayout::PixelBound(Bitmap(0x20000000, 1, 32)), 0);
  EXPECT_TRUE(GdiByteLayout::PixelsWithinBound(Bitmap(0x20000000, 1, 32), 0));
  EXPECT_EQ(GdiByteLayout::PixelBound(Bitmap(1, INT32_MIN, 8)), INT32_MIN);
  EXPECT_FALSE(GdiByteLayout::PixelsWithinBound(Bitmap(3, 2, 24), 17));
}

TEST(GdiByteLayoutTest, OnlyWhatGdiReadsInsideThePixelsIsDrawn) {
  // Rows are padded to 32 bits: 3 pixels of 24 bits take 12 bytes, not 9.
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(3, 1, 24), 9));
  EXPECT_TRUE(GdiByteLayout::StaysInsidePixels(Bitmap(3, -1, 24), 12));
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(8, 8, 1), 0));
  EXPECT_TRUE(GdiByteLayout::StaysInsidePixels(Bitmap(8, 8, 1), 32));
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(0x20000000, 1, 32), 16));
  EXPECT_TRUE(GdiByteLayout::StaysInsidePixels(Bitmap(4, 4, 8, 1, 10), 10));
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(4, 4, 8, 1, 11), 10));
  Header longer = Bitmap(1, 1, 32);
  longer.size = 124;
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(longer, 4096));
  Header manyColours = Bitmap(1, 1, 8);
  manyColours.colorsUsed = 257;
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(manyColours, 4096));
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(1, 1, 24, 4, 0), 4096));
}

TEST(GdiByteLayoutTest, CountedLengthsAreReckonedUnsignedIn32Bits) {
  EXPECT_EQ(GdiByteLayout::StringBytes(0, 2), 2u);
  EXPECT_EQ(GdiByteLayout::StringBytes(5, 1), 6u);
  EXPECT_EQ(GdiByteLayout::SpacingBytes(3, 0), 8u);
  EXPECT_EQ(GdiByteLayout::SpacingBytes(3, GdiByteLayout::kPdyOption), 16u);
  // A count of 0 wraps: no array is that long.
  EXPECT_EQ(GdiByteLayout::SpacingBytes(0, 0), 0xFFFFFFFCu);
  EXPECT_EQ(GdiByteLayout::SpacingBytes(0, GdiByteLayout::kPdyOption), 0xFFFFFFF8u);
  EXPECT_EQ(GdiByteLayout::CubicBytes(3), 24u);
  EXPECT_EQ(GdiByteLayout::CubicBytes(0x20000000), 0u);
  EXPECT_FALSE(GdiByteLayout::CubicBytesExact(0x20000001));
}
