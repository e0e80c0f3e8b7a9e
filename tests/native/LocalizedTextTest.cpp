#include "ui/LocalizedText.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

std::string Fill(const char16_t* text, const char16_t* value) {
  return LocalizedText::Fill(MString(text), MString(value)).ToUtf8();
}

TEST(LocalizedText, EveryCaretTakesTheValueAndTheValueIsNotScannedAgain) {
  EXPECT_EQ(Fill(u"Installation of Lumen Player ^ is complete", LocalizedText::kProductVersion),
            "Installation of Lumen Player 28.0 is complete");
  EXPECT_EQ(Fill(u"^ (^)^", u"x"), "x (x)x");
  EXPECT_EQ(Fill(u"Fatal error '^'.", u"a^b"), "Fatal error 'a^b'.");
}

TEST(LocalizedText, WidthIsTheLeadingNumberAndNoNumberGivesTheNarrowWindow) {
  EXPECT_EQ(LocalizedText::WindowWidth(MString(u"730")), 730u);
  EXPECT_EQ(LocalizedText::WindowWidth(MString(u"750 wide")), 750u);
  for (const char16_t* none : {u"", u"0", u"wide", u" 730"}) EXPECT_EQ(LocalizedText::WindowWidth(MString(none)), 450u);
  EXPECT_EQ(LocalizedText::WindowWidth(MString()), 450u);
}

}  // namespace
