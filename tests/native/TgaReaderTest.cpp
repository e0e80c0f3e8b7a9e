#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "ui/TgaReader.h"

namespace SASM {
namespace {

std::vector<uint8_t> Header(uint16_t width, uint16_t height, uint8_t depth, bool runLength) {
  std::vector<uint8_t> h(18, 0);
  h[2] = runLength ? 10 : 2;
  h[12] = width & 0xFF;
  h[13] = width >> 8;
  h[14] = height & 0xFF;
  h[15] = height >> 8;
  h[16] = depth;
  h[17] = 8;
  return h;
}

std::vector<uint8_t> Decode(const std::vector<uint8_t>& file, size_t pixels) {
  TgaReader::Header header;
  EXPECT_TRUE(TgaReader::ReadHeader(file.data(), file.size(), header));
  std::vector<uint8_t> out(pixels * 4, 0xEE);
  TgaReader::Decode(file.data(), file.size(), header, out.data(), pixels);
  return out;
}

TEST(TgaReader, ReadsTheFieldsItUsesAndNothingElse) {
  auto file = Header(569, 175, 32, true);
  file[0] = 9;  // an identifier length is not skipped
  TgaReader::Header header;
  ASSERT_TRUE(TgaReader::ReadHeader(file.data(), file.size(), header));
  EXPECT_EQ((std::vector<uint32_t>{header.width, header.height, header.depth}), (std::vector<uint32_t>{569, 175, 32}));
  EXPECT_TRUE(header.runLength);
  EXPECT_FALSE(TgaReader::ReadHeader(file.data(), 17, header));
}

TEST(TgaReader, RunAndRawPacketsOf32BitPixelsKeepTheFilesBytes) {
  auto file = Header(5, 1, 32, true);
  const uint8_t body[] = {0x82, 1, 2, 3, 4,              // run of 3
                          0x01, 5, 6, 7, 8, 9, 10, 11, 12};  // raw packet of 2
  file.insert(file.end(), std::begin(body), std::end(body));
  EXPECT_EQ(Decode(file, 5), (std::vector<uint8_t>{1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST(TgaReader, TwentyFourBitPixelsGainFullAlphaInBothForms) {
  auto rle = Header(3, 1, 24, true);
  const uint8_t body[] = {0x81, 10, 20, 30, 0x00, 40, 50, 60};
  rle.insert(rle.end(), std::begin(body), std::end(body));
  EXPECT_EQ(Decode(rle, 3), (std::vector<uint8_t>{10, 20, 30, 255, 10, 20, 30, 255, 40, 50, 60, 255}));

  auto raw = Header(2, 1, 24, false);
  const uint8_t rawBody[] = {1, 2, 3, 4, 5, 6};
  raw.insert(raw.end(), std::begin(rawBody), std::end(rawBody));
  EXPECT_EQ(Decode(raw, 2), (std::vector<uint8_t>{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(TgaReader, Uncompressed32BitKeepsOnlyEachPixelsFirstByte) {
  auto raw = Header(2, 1, 32, false);
  const uint8_t body[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
  raw.insert(raw.end(), std::begin(body), std::end(body));
  EXPECT_EQ(Decode(raw, 2), (std::vector<uint8_t>{0x11, 0, 0, 0, 0x55, 0, 0, 0}));
}

TEST(TgaReader, StaysInsideItsBuffersWhenInputEndsEarlyOrARunPassesTheTotal) {
  // A run of 128 into a 2-by-2 image: four pixels written, the rest dropped.
  auto longRun = Header(2, 2, 32, true);
  const uint8_t run[] = {0xFF, 9, 8, 7, 6};
  longRun.insert(longRun.end(), std::begin(run), std::end(run));
  auto px = Decode(longRun, 4);
  EXPECT_EQ(px, (std::vector<uint8_t>{9, 8, 7, 6, 9, 8, 7, 6, 9, 8, 7, 6, 9, 8, 7, 6}));

  // A raw packet cut in its second pixel: the first lands, the rest stays untouched.
  auto cut = Header(3, 1, 32, true);
  const uint8_t part[] = {0x02, 1, 2, 3, 4, 5, 6};
  cut.insert(cut.end(), std::begin(part), std::end(part));
  px = Decode(cut, 3);
  EXPECT_EQ(std::vector<uint8_t>(px.begin(), px.begin() + 4), (std::vector<uint8_t>{1, 2, 3, 4}));
  EXPECT_EQ(px[4], 0xEE);

  // Header only, both forms.
  auto bare = Header(4, 4, 32, false);
  EXPECT_EQ(Decode(bare, 16), std::vector<uint8_t>(64, 0xEE));
  bare[2] = 10;
  EXPECT_EQ(Decode(bare, 16), std::vector<uint8_t>(64, 0xEE));
}

}  // namespace
}  // namespace SASM
