#include "ui/LocaleMetrics.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

TEST(LocaleMetrics, FontFollowsTheExactThreadLocaleNotTheLanguageOfTheStrings) {
  EXPECT_STREQ(LocaleMetrics::For(1042).fontFace, "Arial");
  EXPECT_EQ(LocaleMetrics::For(1042).FontSize(16), 16);
  EXPECT_STREQ(LocaleMetrics::For(1028).fontFace, "Mingliu");
  EXPECT_EQ(LocaleMetrics::For(1028).FontSize(16), 13);
  EXPECT_STREQ(LocaleMetrics::For(1041).fontFace, "Mincho");
  EXPECT_EQ(LocaleMetrics::For(1041).FontSize(16), 14);
  EXPECT_STREQ(LocaleMetrics::For(2052).fontFace, "SimSun");
  // Chinese of Hong Kong and Singapore, and Korean of another region, are not listed.
  for (uint32_t other : {3076u, 4100u, 2066u, 1033u, 0u}) {
    EXPECT_STREQ(LocaleMetrics::For(other).fontFace, "Arial") << other;
    EXPECT_EQ(LocaleMetrics::For(other).FontSize(16), 16) << other;
  }
}

TEST(LocaleMetrics, OffsetsDifferPerUseAndKoreanMovesOnlySomeTexts) {
  const LocaleMetrics& korean = LocaleMetrics::For(1042);
  EXPECT_EQ(korean.splashTextOffset, 0);
  EXPECT_EQ(korean.autoUpdateTextOffset, 3);
  EXPECT_EQ(korean.restartNoteOffset, 1);
  EXPECT_EQ(korean.updateChoiceTextOffset, 0);
  const LocaleMetrics& japanese = LocaleMetrics::For(1041);
  EXPECT_EQ(japanese.updateChoiceTextOffset, 3);
  EXPECT_EQ(japanese.updateChoiceFirstLabelOffset, 0);
  EXPECT_EQ(japanese.updateChoiceSecondLabelOffset, 1);
  EXPECT_EQ(LocaleMetrics::For(1028).updateChoiceFirstLabelOffset, 1);
  EXPECT_EQ(LocaleMetrics::For(2052).splashTextOffset, 3);
  const LocaleMetrics& other = LocaleMetrics::For(1049);
  EXPECT_EQ(other.splashTextOffset + other.autoUpdateTextOffset + other.restartNoteOffset +
                other.updateChoiceTextOffset + other.updateChoiceSecondLabelOffset,
            0);
}

}  // namespace
