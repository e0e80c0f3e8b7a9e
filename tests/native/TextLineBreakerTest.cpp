#include "ui/TextLineBreaker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace SASM;

namespace {

// Every character is ten pixels wide, bold ones twelve; lines are 16 high.
class FixedWidthSink : public TextLineBreaker::Sink {
 public:
  using Measure = TextLineBreaker::Measure;
  using Edges = TextLineBreaker::Edges;
  using Box = TextLineBreaker::Box;

  Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) override {
    const int32_t each = bold ? 12 : 10;
    Measure measure;
    measure.width = static_cast<int32_t>(text.size()) * each;
    measure.height = 16;
    while (static_cast<size_t>(measure.fit) < text.size() && (measure.fit + 1) * each <= maxWidth) {
      ++measure.fit;
      measure.extents.push_back(measure.fit * each);
    }
    ++measures;
    return measure;
  }
  int32_t DrawText(std::u16string_view text, const Edges& rect, uint32_t colour, uint32_t format) override {
    draws.push_back(MString(text).ToUtf8() + "@" + std::to_string(rect.left) + "," + std::to_string(rect.top));
    colours.push_back(colour);
    formats.push_back(format);
    return 16;
  }
  void AddLink(const MTextChunk& chunk, const Box& box) override {
    links.push_back(chunk.href.ToUtf8() + " " + std::to_string(box.x) + "," + std::to_string(box.y) + " " +
                    std::to_string(box.width) + "x" + std::to_string(box.height));
  }

  std::vector<std::string> draws, links;
  std::vector<uint32_t> colours, formats;
  int measures = 0;
};

using Lines = std::vector<std::string>;

int32_t LayOut(const char16_t* markup, int32_t width, FixedWidthSink& sink, int32_t offset = 0) {
  return TextLineBreaker::Layout(MTextChunk::Parse(MString(markup), true, false, 0), width, 100, offset, 0xAABBCC, 4,
                                 sink);
}

TEST(TextLineBreaker, BreaksAtTheLastBlankThatFitsAndCutsAWordWiderThanTheLine) {
  FixedWidthSink sink;
  EXPECT_EQ(LayOut(u"one two three", 85, sink), 2);
  EXPECT_EQ(sink.draws, (Lines{"one two@0,0", "three@0,16"}));
  EXPECT_EQ(sink.formats[0], 4u + 288u);

  FixedWidthSink cut;
  EXPECT_EQ(LayOut(u"abcdefghij", 55, cut), 2);
  EXPECT_EQ(cut.draws, (Lines{"abcde@0,0", "fghij@0,16"}));
  // A blank at the very start is no place to break.
  FixedWidthSink leading;
  LayOut(u" abcdef", 35, leading);
  EXPECT_EQ(leading.draws[0], " ab@0,0");
}

TEST(TextLineBreaker, RunsShareALineAndSpacingMovesEveryPassDown) {
  FixedWidthSink sink;
  EXPECT_EQ(LayOut(u"ab<strong>cd</strong>", 200, sink, 5), 1);
  EXPECT_EQ(sink.draws, (Lines{"ab@0,5", "cd@20,5"}));

  FixedWidthSink list;
  EXPECT_EQ(LayOut(u"<ul><li>one two</li></ul>end", 60, list), 4);
  // The item's spacing of 8 is added on both of its lines, the list's end spaces "end".
  EXPECT_EQ(list.draws, (Lines{"\u2022 one@0,8", "two@0,32", "end@0,56"}));
}

TEST(TextLineBreaker, LinkPiecesAreAnnouncedWithTheirExtentAndDrawnInTheLinkColour) {
  FixedWidthSink sink;
  LayOut(u"go <a href=\"http://h.example/\">there now</a>", 80, sink, 3);
  EXPECT_EQ(sink.draws, (Lines{"go @0,3", "there@30,3", "now@0,19"}));
  EXPECT_EQ(sink.links, (Lines{"http://h.example/ 30,3 50x16", "http://h.example/ 0,19 30x16"}));
  EXPECT_EQ(sink.colours, (std::vector<uint32_t>{MTextChunk::kWhite, 0xAABBCC, 0xAABBCC}));
}

TEST(TextLineBreaker, NarrowEmptyAndHugeAreasEnd) {
  FixedWidthSink none;
  EXPECT_EQ(TextLineBreaker::Layout({}, 100, 100, 0, 0, 0, none), 1);
  FixedWidthSink zero;
  EXPECT_EQ(LayOut(u"text", 0, zero), 1);
  EXPECT_TRUE(zero.draws.empty());
  // Narrower than one character: nothing can be drawn, and the layout stops.
  FixedWidthSink narrow;
  EXPECT_EQ(LayOut(u"ab cd", 9, narrow), 1);
  EXPECT_TRUE(narrow.draws.empty());
  EXPECT_LT(narrow.measures, 5);

  FixedWidthSink huge;
  std::u16string text;
  for (int i = 0; i < 2000; ++i) text += u"word ";
  EXPECT_EQ(LayOut(text.c_str(), 100, huge), 1000);
}

TEST(TextLineBreaker, AlphaUsesGreenAsCoverageShadowsBelowAndLeavesTheTopRow) {
  // A 3x3 buffer, bottom-up; the area is its top-left 2x2.
  std::vector<uint32_t> pixels(9, 0);
  auto at = [&](int screenRow, int column) -> uint32_t& { return pixels[(2 - screenRow) * 3 + column]; };
  at(0, 0) = 0x00FFFFFF;  // white text on the top row
  at(1, 1) = 0x00008000;  // half coverage in green
  TextLineBreaker::ApplyAlpha(pixels.data(), 3, 3, 2, 2, 255);
  EXPECT_EQ(at(0, 0), 0x00FFFFFFu);  // the top row is left as drawn
  // Below the white pixel: no coverage of its own, a full shadow from above, black.
  EXPECT_EQ(at(1, 0), 0xFD000000u);
  const uint32_t a = (0x80 * 255) >> 8;
  EXPECT_EQ(at(1, 1), (a << 24) | (((a * 0x80) >> 8) << 8));
  EXPECT_EQ(at(2, 0), 0u);  // outside the area
}

}  // namespace
