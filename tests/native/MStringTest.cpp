#include "engine/MString.h"

#include <gtest/gtest.h>

using SASM::MString;

TEST(MString, CopyKeepsTextAfterSourceIsCut) {
  MString source(u"abcdef");
  MString copy = source;
  source.Take(3);
  EXPECT_EQ(copy.View(), u"abcdef");
  EXPECT_EQ(source.View(), u"def");
}
