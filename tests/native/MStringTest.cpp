#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "engine/MString.h"

using SASM::MString;

namespace {

MString Path(char16_t separator, const MString& left, const MString& right) {
  MString joined = left;
  joined.AppendPath(separator, right);
  return joined;
}

}  // namespace

TEST(MStringConstruction, Utf8DecodesEverySequenceFromItsLeadByteOnly) {
  // Two-byte leads: (b & 31) * 64 | (b & 63), whatever the trailing byte says.
  EXPECT_EQ(MString::FromUtf8("\xD0\xB0").View(), std::u16string(1, char16_t{0x410}));
  EXPECT_EQ(MString::FromUtf8("\xD0\x80").View(), std::u16string(1, char16_t{0x410}));
  EXPECT_EQ(MString::FromUtf8("A\xC3\xA9z").View(), (std::u16string{u'A', char16_t{0xC3}, u'z'}));
  // Three-byte leads: ((b & 15) * 64 | (b & 63)) * 64 | (b & 63).
  EXPECT_EQ(MString::FromUtf8("\xE2\x82\xAC").View(), std::u16string(1, char16_t{0x28A2}));
  // Four-byte sequences all become 65535, one unit each.
  EXPECT_EQ(MString::FromUtf8("\xF0\x9F\x98\x80!").View(), (std::u16string{char16_t{0xFFFF}, u'!'}));
}

TEST(MStringConstruction, Utf8StatedLengthBoundsTheScanWithoutReadingPastIt) {
  EXPECT_EQ(MString::FromUtf8("abcdef", 2).View(), u"ab");
  // An exact heap buffer with no terminator: a cut-short sequence still yields its unit.
  std::unique_ptr<char[]> bytes(new char[2]{'a', '\xE2'});
  EXPECT_EQ(MString::FromUtf8(bytes.get(), 2).View(), (std::u16string{u'a', char16_t{0x28A2}}));
  // Within a stated length a 0 byte is a sequence like any other.
  EXPECT_EQ(MString::FromUtf8("a\0b", 3).Length(), 3);
}

TEST(MStringConstruction, NumbersUseUpperCaseDigitsAndParsingStopsAtANonDigitWithoutOverflowCheck) {
  EXPECT_EQ(MString::FromNumber(255, 16).View(), u"FF");
  EXPECT_EQ(MString::FromNumber(7, 10, 3).View(), u"007");

  EXPECT_EQ(MString(u"28.0").ParseDigits(), 28u);
  EXPECT_EQ(MString().ParseDigits(), 0u);
  EXPECT_EQ(MString(u"4294967297").ParseDigits(), 1u);
}

TEST(MStringSharing, CopyKeepsTextAfterSourceIsCutAndAppendMakesANewBlock) {
  MString source(u"abcdef");
  MString copy = source;
  source.Take(3);
  EXPECT_EQ(copy.View(), u"abcdef");
  EXPECT_EQ(source.View(), u"def");

  MString a(u"ab");
  MString b = a;
  a.Append(MString(u"cd"));
  EXPECT_EQ(a.View(), u"abcd");
  EXPECT_EQ(b.View(), u"ab");
}

TEST(MStringAppendPath, JoinsWithExactlyOneSeparatorLookingAtTheOtherBlockNotItsView) {
  EXPECT_EQ(Path(u'\\', MString(u"a\\"), MString(u"\\b")).View(), u"a\\b");
  EXPECT_EQ(Path(u'\\', MString(u"a"), MString(u"b")).View(), u"a\\b");
  EXPECT_EQ(Path(u'\\', MString::Empty(), MString(u"b")).View(), u"b");
  EXPECT_EQ(Path(0, MString(u"a"), MString(u"b")).View(), u"a");
  MString other(u"\\xb");
  other.Take(1);  // view "xb", but the block still starts with the separator
  EXPECT_EQ(Path(u'\\', MString(u"a"), other).View(), u"axb");
}

TEST(MStringReplace, ReplacesLeftToRightWithoutRescanning) {
  EXPECT_EQ(MString::Replace(MString(u"aXbXc"), MString(u"X"), MString(u"--")).View(), u"a--b--c");
  // "xxy": the match at 1 produces "x" + "x"; a rescan would have found "xy" again.
  EXPECT_EQ(MString::Replace(MString(u"xxy"), MString(u"xy"), MString(u"x")).View(), u"xx");
  EXPECT_EQ(MString::Replace(MString(u"abc"), MString::Empty(), MString(u"z")).View(), u"abc");
  EXPECT_TRUE(MString::Replace(MString(), MString(u"a"), MString(u"z")).IsNull());
}

TEST(MStringScanning, SpanAndTakeStopBeforeTheDelimiterAndTakeLeavesEmptyAlone) {
  EXPECT_EQ(MString(u"a.b").SpanUntil(".").View(), u"a");
  EXPECT_EQ(MString(u"ab").SpanUntil(".").View(), u"ab");
  MString text(u"key=value");
  EXPECT_EQ(text.TakeUntil("=").View(), u"key");
  EXPECT_EQ(text.View(), u"=value");
  MString blanks(u" \t ab");
  EXPECT_EQ(blanks.TakeUntil(" \t", true).View(), u" \t ");
  EXPECT_EQ(blanks.View(), u"ab");
  MString empty = MString::Empty();
  EXPECT_TRUE(empty.Take(1).IsEmpty());
  EXPECT_TRUE(empty.IsEmpty());
}

TEST(MStringScanning, TailFromAndCutTailKeepTheDelimiterInTheTail) {
  MString file(u"C:\\dir\\name.ext");
  EXPECT_EQ(file.TailFrom(".").View(), u".ext");
  EXPECT_EQ(file.TailFrom("\\").View(), u"\\name.ext");
  EXPECT_TRUE(MString(u"name").TailFrom("\\").IsEmpty());

  MString shared = file;
  EXPECT_EQ(file.CutTail("\\").View(), u"\\name.ext");
  EXPECT_EQ(file.View(), u"C:\\dir");
  EXPECT_EQ(shared.View(), u"C:\\dir\\name.ext");
}

TEST(MStringScanning, WideUnitsNeverMatchTheSetButStopAnInvertedScan) {
  // 0x141 has the low byte of 'A', and still is not in the set "A".
  MString wide(u"x\u0141Ay");
  EXPECT_EQ(wide.SpanUntil("A").View(), u"x\u0141");
  EXPECT_EQ(wide.TailFrom("A").View(), u"Ay");
  EXPECT_EQ(wide.SpanUntil("xy", true).View(), u"x");
  EXPECT_EQ(MString(u"ab\u0141").TailFrom("ab", true).View(), u"\u0141");
  // Units from 128 to 255 match the set byte of the same value.
  EXPECT_EQ(MString(u"x\u00E9y").SpanUntil("\xE9").View(), u"x");
}

TEST(MStringScanning, SubstringClampsAnyCountToTheRestWithoutOverflow) {
  // Found by fuzzing: from 20 with the largest count overflowed the bound test.
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  MString text(u"0123456789abcdefghijkl");
  EXPECT_EQ(text.Substring(20, kMax).View(), u"kl");
  EXPECT_EQ(text.Substring(kMax, kMax).View(), u"");
  EXPECT_EQ(text.Substring(std::numeric_limits<int32_t>::min(), 2).View(), u"01");
  EXPECT_EQ(text.Substring(21, -1).View(), u"l");
}
