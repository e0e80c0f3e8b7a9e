// The print relay against a recording stub of GDI: which calls a method
// makes, with which arguments and in which order, what it hands back, and
// that every refusal draws nothing, leaves no array accessed and no object
// behind. After each test the DC's first object is selected again.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "broker/BrokerPrintMethods.h"
#include "tests/fakes/RecordingPrintRelayPlatform.h"

using namespace SASM;
using Strings = std::vector<std::string>;
using Thin = BrokerPrintMethods::Thin;
using Shape = BrokerPrintMethods::Shape;
using ByteArray = PrintRelayPlatform::ByteArray;

namespace {

constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
constexpr int32_t kInvalid = static_cast<int32_t>(0x80070057);
constexpr uint32_t kDc = RecordingPrintRelayPlatform::kDc;

std::string Ints(std::initializer_list<int32_t> values) {
  std::string bytes(values.size() * 4, '\0');
  std::memcpy(bytes.data(), values.begin(), bytes.size());
  return bytes;
}

class BrokerPrintMethodsTest : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_EQ(gdi.LockedArrays(), 0u);
    EXPECT_EQ(gdi.LiveObjects(), 0u);
    EXPECT_EQ(gdi.Selected(), RecordingPrintRelayPlatform::kOriginal);
  }

  ByteArray Array(const std::string& bytes) { return gdi.MakeArray(bytes); }
  ByteArray Rect(int32_t a, int32_t b, int32_t c, int32_t d) { return Array(Ints({a, b, c, d})); }
  // A BITMAPINFOHEADER and its trailing colours, `length` bytes in all.
  ByteArray Header(int32_t width, int32_t height, uint16_t bitCount, size_t length = 44) {
    std::string bytes = Ints({40, width, height, 0, 0, 0, 0, 0, 0, 0});
    bytes[12] = 1;
    std::memcpy(bytes.data() + 14, &bitCount, 2);
    bytes.resize(length, '\0');
    return Array(bytes);
  }
  ByteArray Wide(std::u16string_view text) {
    std::string bytes((text.size() + 1) * 2, '\0');
    std::memcpy(bytes.data(), text.data(), text.size() * 2);
    return Array(bytes);
  }
  int32_t TextW(uint32_t count, ByteArray text, ByteArray spacing, uint32_t options = 0, uint32_t isDxNull = 0,
                ByteArray rect = nullptr, uint32_t isRectNull = 0) {
    rc = 0xDEAD;
    return print.ExtTextOutW(kDc, 10, 20, options, isRectNull, rect ? rect : Rect(1, 2, 3, 4), text, count, isDxNull,
                             spacing, &rc);
  }
  // Refused with `hresult` and nothing drawn.
  void ExpectRefused(int32_t result, int32_t hresult = kFail) {
    EXPECT_EQ(result, hresult);
    EXPECT_EQ(gdi.Log(), Strings{});
  }
  // Refused with 0x80004005 after `drawn` calls of earlier steps.
  void ExpectRefusedAfter(size_t drawn, int32_t result) {
    EXPECT_EQ(result, kFail);
    EXPECT_EQ(gdi.Log().size(), drawn);
  }

  RecordingPrintRelayPlatform gdi;
  BrokerPrintMethods print{gdi};
  uint32_t rc = 0;
};

struct ThinCase {
  Thin method;
  BrokerPrintMethods::ThinArguments arguments;
  const char* call;
  Shape shape;
};

// One row per thin method: its GDI call as the stub saw it, and its shape.
const ThinCase kThinCases[] = {
    {Thin::kDeleteDC, {kDc}, "DeleteDC(dc)", Shape::kOut},
    {Thin::kSaveDC, {kDc}, "SaveDC(dc)", Shape::kOut},
    {Thin::kRestoreDC, {kDc, 0xFFFFFFFF}, "RestoreDC(dc,-1)", Shape::kHresult},
    {Thin::kStartPage, {kDc}, "StartPage(dc)", Shape::kHresultPositive},
    {Thin::kEndPage, {kDc}, "EndPage(dc)", Shape::kHresultPositive},
    {Thin::kEndDoc, {kDc}, "EndDoc(dc)", Shape::kHresultPositive},
    {Thin::kIntersectClipRect, {kDc, 1, 2, 0xFFFFFFFD, 4}, "IntersectClipRect(dc,1,2,-3,4)", Shape::kOut},
    {Thin::kSetPolyFillMode, {kDc, 2}, "SetPolyFillMode(dc,2)", Shape::kOut},
    {Thin::kBeginPath, {kDc}, "BeginPath(dc)", Shape::kHresult},
    {Thin::kEndPath, {kDc}, "EndPath(dc)", Shape::kHresult},
    {Thin::kMoveTo, {kDc, 5, 0xFFFFFFFA}, "MoveToEx(dc,5,-6,null)", Shape::kHresult},
    {Thin::kLineTo, {kDc, 7, 8}, "LineTo(dc,7,8)", Shape::kHresult},
    {Thin::kSelectClipPath, {kDc, 1}, "SelectClipPath(dc,1)", Shape::kHresult},
    {Thin::kSelectClipRgnNULL, {kDc}, "SelectClipRgn(dc,0)", Shape::kOut},
    {Thin::kGetTextAlign, {kDc}, "GetTextAlign(dc)", Shape::kOut},
    {Thin::kSetTextAlign, {kDc, 24}, "SetTextAlign(dc,24)", Shape::kOut},
    {Thin::kGetBkMode, {kDc}, "GetBkMode(dc)", Shape::kOut},
    {Thin::kSetBkMode, {kDc, 1}, "SetBkMode(dc,1)", Shape::kOut},
    {Thin::kGetTextColor, {kDc}, "GetTextColor(dc)", Shape::kOut},
    {Thin::kSetTextColor, {kDc, 0xFF}, "SetTextColor(dc,0xFF)", Shape::kOut},
    {Thin::kGetDeviceCaps, {kDc, 88}, "GetDeviceCaps(dc,88)", Shape::kOut},
    {Thin::kSetTextCharacterExtra, {kDc, 2}, "SetTextCharacterExtra(dc,2)", Shape::kOut},
    {Thin::kSetGraphicsMode, {kDc, 2}, "SetGraphicsMode(dc,2)", Shape::kOut},
    {Thin::kGetObjectType, {0x1234}, "GetObjectType(0x1234)", Shape::kOut},
    {Thin::kGetCurrentObject, {kDc, 6}, "GetCurrentObject(dc,6)", Shape::kOut},
    {Thin::kSelectObject, {kDc, 0x80001234}, "SelectObject(dc,0xFFFFFFFF80001234)", Shape::kOut},
    {Thin::kDeleteObject, {0x1234}, "DeleteObject(0x1234)", Shape::kOut},
};

}  // namespace

TEST_F(BrokerPrintMethodsTest, EachThinMethodMakesItsOneCallAndAnswersInItsShape) {
  ASSERT_EQ(std::size(kThinCases), BrokerPrintMethods::ThinTable().size());
  for (const ThinCase& c : kThinCases) {
    SCOPED_TRACE(c.call);
    ASSERT_EQ(BrokerPrintMethods::ThinTable()[static_cast<size_t>(c.method)].shape, c.shape);
    std::string name = std::string(c.call).substr(0, std::string(c.call).find('('));
    // A zero, a negative and a 64-bit result; outs get the low 32 bits.
    for (int64_t result : {int64_t{0}, int64_t{-1}, int64_t{0x123456789}}) {
      gdi.ClearLog();
      gdi.Answer(name, result);
      uint32_t out = 0xDEAD;
      int32_t hresult = print.CallThin(c.method, c.arguments, &out);
      EXPECT_EQ(gdi.Log(), Strings{c.call});
      bool failed = c.shape == Shape::kHresult ? result == 0 : c.shape == Shape::kHresultPositive && result < 1;
      EXPECT_EQ(hresult, failed ? kFail : 0) << result;
      EXPECT_EQ(out, c.shape == Shape::kOut ? static_cast<uint32_t>(result) : 0xDEADu);
    }
  }
}

TEST_F(BrokerPrintMethodsTest, StartDocNamesTheDocumentAndReadsTheSixCapabilitiesAroundOneConversion) {
  BrokerPrintMethods::DocumentMetrics m;
  ASSERT_EQ(print.StartDocument(kDc, m), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"StartDocW(dc,40,Lumen)", "GetDeviceCaps(dc,8)", "GetDeviceCaps(dc,10)",
                                "LPtoDP(dc,0:0 80:100,2)", "GetDeviceCaps(dc,110)", "GetDeviceCaps(dc,111)",
                                "GetDeviceCaps(dc,88)", "GetDeviceCaps(dc,90)"}));
  // The stub's conversion doubles.
  EXPECT_EQ((std::vector<uint32_t>{m.pixelWidth, m.pixelHeight, m.deviceWidth, m.deviceHeight, m.paperPixelWidth,
                                   m.paperPixelHeight, m.hRes, m.vRes}),
            (std::vector<uint32_t>{80, 100, 160, 200, 1100, 1110, 880, 900}));

  // Only -1 is StartDoc's failure.
  gdi.Answer("StartDocW", 0);
  EXPECT_EQ(print.StartDocument(kDc, m), 0);
  gdi.ClearLog();
  gdi.Answer("StartDocW", -1);
  EXPECT_EQ(print.StartDocument(kDc, m), kFail);
  EXPECT_EQ(gdi.Log(), Strings{"StartDocW(dc,40,Lumen)"});
}

TEST_F(BrokerPrintMethodsTest, CompositesSelectTheirObjectDrawSelectTheOldBackAndDeleteIt) {
  ASSERT_EQ(print.AddRectangle(kDc, Rect(1, -2, 3, 4), 0xFF00), 0);
  ASSERT_EQ(print.PathToSolidFill(kDc, 0xFF), 0);
  ASSERT_EQ(print.PathToStrokedLine(kDc, 30, 0xFF0000), 0);
  EXPECT_EQ(gdi.Log(),
            (Strings{"CreateSolidBrush(0xFF00)", "SelectObject(dc,obj1)", "FillRect(dc,{1,-2,3,4},obj1)",
                     "SelectObject(dc,orig)", "DeleteObject(obj1)",
                     "CreateSolidBrush(0xFF)", "SelectObject(dc,obj2)", "FillPath(dc)", "SelectObject(dc,orig)",
                     "DeleteObject(obj2)",
                     "ExtCreatePen(0x10000,30,{0,0xFF0000,0})", "SelectObject(dc,obj3)", "StrokePath(dc)",
                     "SelectObject(dc,orig)", "DeleteObject(obj3)"}));
  // GDI's failures go unnoticed.
  gdi.ClearLog();
  gdi.Answer("FillPath", 0);
  gdi.Answer("StrokePath", 0);
  EXPECT_EQ(print.PathToSolidFill(kDc, 0), 0);
  EXPECT_EQ(print.PathToStrokedLine(kDc, 1, 0), 0);
  gdi.ClearLog();
  ExpectRefused(print.AddRectangle(kDc, Array(std::string(15, 'r')), 0));
  ExpectRefused(print.AddRectangle(kDc, nullptr, 0));
}

TEST_F(BrokerPrintMethodsTest, BitmapFillClipsToThePathBetweenSaveAndRestoreAndPassesRectanglesAsGiven) {
  std::string pixels(24, '\x7F');
  ASSERT_EQ(print.PathToBitmapFill(kDc, Rect(10, 20, 30, 40), Rect(0, 1, 2, 3), Array(pixels), Header(2, -3, 32), 1),
            0);
  EXPECT_EQ(gdi.Log(), (Strings{"SaveDC(dc)", "SelectClipPath(dc,1)",
                                "StretchDIBits(dc,10,20,30,40,0,1,2,3,bits{127,127,127,127},2x-3x32,0,0xCC0020)",
                                "RestoreDC(dc,3)"}));
  gdi.ClearLog();
  ASSERT_EQ(print.PathToBitmapFill(kDc, Rect(0, 0, 1, 1), Rect(0, 0, 1, 1), Array("abcd"), Header(1, 1, 24), 0), 0);
  EXPECT_EQ(gdi.Log(), Strings{"StretchDIBits(dc,0,0,1,1,0,0,1,1,bits{97,98,99,100},1x1x24,0,0xCC0020)"});

  gdi.ClearLog();
  ASSERT_EQ(print.PathToTransparentBitmapFill(kDc, Rect(1, 2, 3, 4), Rect(5, 6, 7, 8), Array(pixels),
                                              Header(2, 3, 32, 48), 0xFFFFFF, 0x8800C6),
            0);
  EXPECT_EQ(gdi.Log(), (Strings{"SaveDC(dc)", "CreateSolidBrush(0xFFFFFF)", "SelectObject(dc,obj1)",
                                "SelectClipPath(dc,1)",
                                "StretchDIBits(dc,1,2,3,4,5,6,7,8,bits{127,127,127,127},2x3x32,0,0x8800C6)",
                                "SelectObject(dc,orig)", "DeleteObject(obj1)", "RestoreDC(dc,3)"}));
}

TEST_F(BrokerPrintMethodsTest, BitmapFillsRefuseTheOthersHeaderShortRectanglesAndPixelsBelowTheBound) {
  auto plain = [&](ByteArray t, ByteArray s, ByteArray bits, ByteArray header) {
    return print.PathToBitmapFill(kDc, t, s, bits, header, 1);
  };
  auto transparent = [&](ByteArray t, ByteArray s, ByteArray bits, ByteArray header) {
    return print.PathToTransparentBitmapFill(kDc, t, s, bits, header, 0, 0xCC0020);
  };
  std::string six(6, 'p');
  ExpectRefused(plain(Rect(0, 0, 1, 1), Rect(0, 0, 1, 1), Array(six), Header(1, 2, 24, 48)));
  ExpectRefused(transparent(Rect(0, 0, 1, 1), Rect(0, 0, 1, 1), Array(six), Header(1, 2, 24, 44)));
  ExpectRefused(plain(Array(std::string(12, 'r')), Rect(0, 0, 1, 1), Array(six), Header(1, 2, 24)));
  ExpectRefused(transparent(Rect(0, 0, 1, 1), nullptr, Array(six), Header(1, 2, 24, 48)));
  ExpectRefused(plain(Rect(0, 0, 1, 1), Rect(0, 0, 1, 1), Array("12345"), Header(1, -2, 24)));
  // The transparent fill wants its pixel array even where the bound is 0.
  ExpectRefused(transparent(Rect(0, 0, 1, 1), Rect(0, 0, 1, 1), nullptr, Header(8, 1, 1, 48)));
}

TEST_F(BrokerPrintMethodsTest, PixelsThatPassTheBoundButNotGdisOwnReadingAreNotDrawn) {
  // Below 8 bits the bound is 0: an absent or short array passes, and the fill answers 0.
  EXPECT_EQ(print.PathToBitmapFill(kDc, Rect(0, 0, 8, 8), Rect(0, 0, 8, 8), nullptr, Header(8, 8, 1), 1), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"SaveDC(dc)", "SelectClipPath(dc,1)", "RestoreDC(dc,3)"}));
  gdi.ClearLog();
  // 3 pixels of 24 bits meet the bound of 9 bytes, but a row takes 12.
  EXPECT_EQ(print.PathToBitmapFill(kDc, Rect(0, 0, 3, 1), Rect(0, 0, 3, 1), Array("123456789"), Header(3, 1, 24), 0),
            0);
  EXPECT_EQ(gdi.Log(), Strings{});
  gdi.ClearLog();
  EXPECT_EQ(print.PathToBitmapFill(kDc, Rect(0, 0, 8, 1), Rect(0, 0, 8, 1), Array("1234"), Header(8, 1, 1), 0), 0);
  EXPECT_EQ(gdi.Log().size(), 1u);
}

TEST_F(BrokerPrintMethodsTest, PolyBezierToWantsEightBytesAPointAndPassesTheCount) {
  ASSERT_EQ(print.PolyBezierTo(kDc, Array(Ints({1, 2, 3, 4, 5, 6})), 3), 0);
  EXPECT_EQ(gdi.Log(), Strings{"PolyBezierTo(dc,1:2 3:4 5:6,3)"});
  gdi.ClearLog();
  // With a count of 0 any present array will do, and GDI gets 0 points.
  gdi.Answer("PolyBezierTo", 0);
  ASSERT_EQ(print.PolyBezierTo(kDc, Array("xyz"), 0), 0);
  EXPECT_EQ(gdi.Log(), Strings{"PolyBezierTo(dc,,0)"});
  gdi.ClearLog();
  ExpectRefused(print.PolyBezierTo(kDc, Array(Ints({1, 2, 3, 4, 5})), 3));
  ExpectRefused(print.PolyBezierTo(kDc, nullptr, 0));
  // 8 x 0x20000001 wraps to 8: the check passes, but GDI isn't asked to read 2^29 points.
  EXPECT_EQ(print.PolyBezierTo(kDc, Array(Ints({1, 2})), 0x20000001), 0);
  EXPECT_EQ(gdi.Log(), Strings{});
}

TEST_F(BrokerPrintMethodsTest, DPtoLPPassesTheCountAsGivenOverABufferThatHoldsIt) {
  uint32_t x = 5, y = static_cast<uint32_t>(-6);
  ASSERT_EQ(print.DPtoLP(kDc, &x, &y, 1, &rc), 0);
  EXPECT_EQ((std::vector<uint32_t>{x, y, rc}), (std::vector<uint32_t>{105, 194, 1}));
  ASSERT_EQ(print.DPtoLP(kDc, &x, &y, 3, &rc), 0);
  ASSERT_EQ(print.DPtoLP(kDc, &x, &y, 0, &rc), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"DPtoLP(dc,5:-6,1)", "DPtoLP(dc,105:194 0:0 0:0,3)", "DPtoLP(dc,,0)"}));
  gdi.ClearLog();
  // More points than any buffer here holds: GDI's failure, with the point unchanged.
  ASSERT_EQ(print.DPtoLP(kDc, &x, &y, 0x80000000, &rc), 0);
  EXPECT_EQ(rc, 0u);
  EXPECT_EQ(x, 205u);
  EXPECT_EQ(gdi.Log(), Strings{});
}

TEST_F(BrokerPrintMethodsTest, FontsAndTransformsTravelAsTheirExactStructures) {
  std::string logFont(92, '\0');
  int32_t height = -40;
  std::memcpy(logFont.data(), &height, 4);
  std::memcpy(logFont.data() + 28, u"Serif", 10);
  gdi.Answer("CreateFontIndirectW", static_cast<int64_t>(0xFFFFFFFF80004444ull));
  uint32_t font = 0;
  ASSERT_EQ(print.CreateFontFromBytes(Array(logFont), &font), 0);
  EXPECT_EQ(font, 0x80004444u);
  // A null font is no failure.
  gdi.Answer("CreateFontIndirectW", 0);
  ASSERT_EQ(print.CreateFontFromBytes(Array(logFont), &font), 0);
  EXPECT_EQ(font, 0u);
  EXPECT_EQ(gdi.Log(), (Strings{"CreateFontIndirectW(-40,Serif)", "CreateFontIndirectW(-40,Serif)"}));

  gdi.ClearLog();
  float xform[6] = {1, 0, 0, 2, 30, 40};
  std::string xformBytes(24, '\0');
  std::memcpy(xformBytes.data(), xform, 24);
  ASSERT_EQ(print.SetWorldTransform(kDc, Array(xformBytes), &rc), 0);
  EXPECT_EQ(gdi.Log(), Strings{"SetWorldTransform(dc,1 0 0 2 30 40)"});
  EXPECT_EQ(rc, 1u);

  std::array<uint8_t, 60> metrics{};
  std::array<uint8_t, 24> transform{};
  ASSERT_EQ(print.TextMetrics(kDc, metrics), 0);
  EXPECT_EQ(metrics[0], 1);
  EXPECT_EQ(metrics[59], 60);
  ASSERT_EQ(print.GetWorldTransform(kDc, transform), 0);
  EXPECT_EQ(transform[23], 0xA0 + 23);
  gdi.Answer("GetTextMetricsW", 0);
  gdi.Answer("GetWorldTransform", 0);
  EXPECT_EQ(print.TextMetrics(kDc, metrics), kFail);
  EXPECT_EQ(print.GetWorldTransform(kDc, transform), kFail);

  gdi.ClearLog();
  ExpectRefused(print.CreateFontFromBytes(Array(std::string(91, '\0')), &font));
  ExpectRefused(print.SetWorldTransform(kDc, Array(std::string(28, '\0')), &rc));
}

TEST_F(BrokerPrintMethodsTest, ExtTextOutTakesAtMost8192CharactersWithTheirTerminator) {
  std::u16string longest(8192, u'L');
  ASSERT_EQ(TextW(8192, Wide(longest), Array(""), 0, 1), 0);
  EXPECT_EQ(rc, 1u);
  gdi.ClearLog();
  // The limit comes before any array is looked at.
  gdi.FailArrayAccess(kFail);
  ExpectRefused(TextW(8193, Wide(longest + u"L"), Array(""), 0, 1), kInvalid);
  gdi.FailArrayAccess(0);
  // Zero characters still want the terminator: 2 bytes wide, 1 narrow.
  ASSERT_EQ(TextW(0, Array(std::string(2, '\0')), Array(""), 0, 1), 0);
  ExpectRefusedAfter(1, TextW(0, Array(std::string(1, '\0')), Array(""), 0, 1));
  ASSERT_EQ(print.ExtTextOutA(kDc, 1, 2, 0, 1, Rect(0, 0, 0, 0), Array(std::string("Ab\0", 3)), 2, 1, Array(""), &rc),
            0);
  EXPECT_EQ(gdi.Log().back(), "ExtTextOutA(dc,1,2,0x0,null,\"Ab\",2,null)");
  EXPECT_EQ(print.ExtTextOutA(kDc, 1, 2, 0, 1, Rect(0, 0, 0, 0), Array("Ab"), 2, 1, Array(""), &rc), kFail);
}

TEST_F(BrokerPrintMethodsTest, ExtTextOutWantsAllThreeArraysEvenWhereAFlagSaysTheyAreUnused) {
  ExpectRefused(TextW(2, Wide(u"Hi"), nullptr, 0, 1));
  ExpectRefused(TextW(2, nullptr, Array(""), 0, 1));
  ExpectRefused(TextW(2, Wide(u"Hi"), Array(""), 0, 1, Array(std::string(12, '\0')), 1));
  ASSERT_EQ(TextW(2, Wide(u"Hi"), Array(""), 6, 1, Rect(1, 2, 3, 4), 1), 0);
  ASSERT_EQ(TextW(2, Wide(u"Hi"), Array(""), 6, 1, Rect(1, 2, 3, 4), 0), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"ExtTextOutW(dc,10,20,0x6,null,\"Hi\",2,null)",
                                "ExtTextOutW(dc,10,20,0x6,{1,2,3,4},\"Hi\",2,null)"}));
}

TEST_F(BrokerPrintMethodsTest, SpacingCoversAllButTheLastCharacterAndDoublesWithPdy) {
  // Three characters need two values; GDI's third reads as 0.
  ASSERT_EQ(TextW(3, Wide(u"abc"), Array(Ints({7, 8}))), 0);
  ExpectRefusedAfter(1, TextW(3, Wide(u"abc"), Array(Ints({7}))));
  ASSERT_EQ(TextW(2, Wide(u"ab"), Array(Ints({7, -1})), 0x2000), 0);
  ExpectRefusedAfter(2, TextW(2, Wide(u"ab"), Array(Ints({7})), 0x2000));
  // At 0 characters the length wraps, so only a null spacing array gets through.
  ExpectRefusedAfter(2, TextW(0, Wide(u""), Array(Ints({1, 2, 3}))));
  EXPECT_EQ(gdi.Log(), (Strings{"ExtTextOutW(dc,10,20,0x0,{1,2,3,4},\"abc\",3,{7,8,0})",
                                "ExtTextOutW(dc,10,20,0x2000,{1,2,3,4},\"ab\",2,{7,-1,0,0})"}));
}

TEST_F(BrokerPrintMethodsTest, TextExtentFollowsTheStringRulesAndReportsGdisFailure) {
  uint32_t cx = 0, cy = 0;
  ASSERT_EQ(print.GetTextExtentPoint32W(kDc, Wide(u"abc"), 3, &cx, &cy), 0);
  EXPECT_EQ((std::pair<uint32_t, uint32_t>{cx, cy}), (std::pair<uint32_t, uint32_t>{27, 14}));
  ASSERT_EQ(print.GetTextExtentPoint32A(kDc, Array(std::string("ab\0", 3)), 2, &cx, &cy), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"GetTextExtentPoint32W(dc,\"abc\",3)", "GetTextExtentPoint32A(dc,\"ab\",2)"}));
  gdi.ClearLog();
  ExpectRefused(print.GetTextExtentPoint32W(kDc, Wide(std::u16string(8193, u'x')), 8193, &cx, &cy), kInvalid);
  ExpectRefused(print.GetTextExtentPoint32W(kDc, Wide(u"abc"), 2, &cx, &cy));
  ExpectRefused(print.GetTextExtentPoint32A(kDc, nullptr, 0, &cx, &cy));
  gdi.Answer("GetTextExtentPoint32A", 0);
  EXPECT_EQ(print.GetTextExtentPoint32A(kDc, Array(std::string("a\0", 2)), 1, &cx, &cy), kFail);
}

TEST_F(BrokerPrintMethodsTest, FontLinkingAnswersTheServicesResultOrFailsWithoutIt) {
  uint32_t pages = 0, linked = 0;
  gdi.Answer("MapFont", 0x8000FFFF);
  EXPECT_EQ(print.FontLinkGetFontCodePages(kDc, 0x80005555, &pages), 0);
  EXPECT_EQ(pages, 0x6000009Fu);
  EXPECT_EQ(print.FontLinkMapFont(kDc, 0x20000, 0x5555, &linked), static_cast<int32_t>(0x8000FFFF));
  EXPECT_EQ(linked, 0x80007777u);
  EXPECT_EQ(print.FontLinkReleaseFont(0x7777), 0);
  EXPECT_EQ(gdi.Log(), (Strings{"GetFontCodePages(dc,0xFFFFFFFF80005555)", "MapFont(dc,0x20000,0x5555)",
                                "ReleaseFont(0x7777)"}));
  gdi.ClearLog();
  gdi.SetFontLink(false);
  ExpectRefused(print.FontLinkGetFontCodePages(kDc, 1, &pages));
  ExpectRefused(print.FontLinkMapFont(kDc, 1, 1, &linked));
  ExpectRefused(print.FontLinkReleaseFont(1));
}

TEST_F(BrokerPrintMethodsTest, ArraysThatAreNotOneDimensionOfBytesFromZeroCountAsAbsentEverywhere) {
  struct Malformed {
    uint32_t dimensions, elementSize;
    int32_t lowerBound;
    bool accessFails;
  };
  for (Malformed m : {Malformed{2, 1, 0, false}, Malformed{1, 2, 0, false}, Malformed{1, 1, 1, false},
                      Malformed{1, 1, 0, true}}) {
    SCOPED_TRACE(std::to_string(m.dimensions) + "/" + std::to_string(m.elementSize) + "/" +
                 std::to_string(m.lowerBound));
    auto bad = [&](const std::string& bytes) { return gdi.MakeArray(bytes, m.dimensions, m.elementSize, m.lowerBound); };
    if (m.accessFails) gdi.FailArrayAccess(static_cast<int32_t>(0x8000FFFF));
    std::string rect(16, '\0');
    uint32_t font = 0, cx = 0, cy = 0;
    ExpectRefused(print.AddRectangle(kDc, bad(rect), 0));
    ExpectRefused(print.PathToBitmapFill(kDc, bad(rect), bad(rect), bad("pppppp"), bad(std::string(44, '\0')), 1));
    ExpectRefused(print.PolyBezierTo(kDc, bad(""), 0));
    ExpectRefused(print.CreateFontFromBytes(bad(std::string(92, '\0')), &font));
    ExpectRefused(print.SetWorldTransform(kDc, bad(std::string(24, '\0')), &rc));
    ExpectRefused(print.GetTextExtentPoint32W(kDc, bad(std::string(4, 'a')), 1, &cx, &cy));
    ExpectRefused(print.ExtTextOutW(kDc, 0, 0, 0, 1, bad(rect), bad(std::string(4, 'a')), 1, 1, bad(""), &rc));
    gdi.FailArrayAccess(0);
  }
}
