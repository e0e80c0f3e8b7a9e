#include "ui/LocaleMetrics.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

TEST(LocaleMetrics, FontFollowsTheExactThreadLocaleNotTheLanguageOfTheStrings) {
  EXPECT_STREQ(LocaleMetrics::For(1028).fontFace, "Mingliu");
  EXPECT_EQ(LocaleMetrics::For(1028).FontSize(16), 13);
  // Chinese of Hong Kong and Singapore, and Korean of another region, are not listed.
  for (uint32_t other : {3076u, 4100u, 2066u, 1033u, 0u}) {
    EXPECT_STREQ(LocaleMetrics::For(other).fontFace, "Arial") << other;
    EXPECT_EQ(LocaleMetrics::For(other).FontSize(16), 16) << other;
  }
}

TEST(LocaleMetrics, OffsetsDifferPerUseAndKoreanMovesOnlySomeTexts) {
  const LocaleMetrics& korean = LocaleMetrics::For(1042);
  EXPECT_EQ(korean.splashTextOffset + korean.updateChoiceTextOffset, 0);
  EXPECT_EQ(korean.autoUpdateTextOffset, 3);
  const LocaleMetrics& other = LocaleMetrics::For(1049);
  EXPECT_EQ(other.splashTextOffset + other.autoUpdateTextOffset + other.restartNoteOffset +
                other.updateChoiceTextOffset + other.updateChoiceSecondLabelOffset,
            0);
}

}  // namespace
