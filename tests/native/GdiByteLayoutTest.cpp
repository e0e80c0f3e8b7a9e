// The bitmap fills' pixel bound as the relay reckons it, wrapping in 32 bits,
// and the stricter reading of GDI that decides whether a fill draws.
#include <gtest/gtest.h>

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

TEST(GdiByteLayoutTest, PixelBoundIsWholeBytesPerPixelTimesAbsoluteHeightInSigned32Bits) {
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
  EXPECT_FALSE(GdiByteLayout::StaysInsidePixels(Bitmap(1, 1, 24, 4, 0), 4096));
}
