#include "engine/ClassId.h"

#include <gtest/gtest.h>

#include "engine/ProductIds.h"

using SASM::ClassId;

TEST(ClassId, TextReadsTheFirstThreeGroupsBackwardsAndParsedTextComesBackUpperCase) {
  ClassId id;
  for (uint8_t i = 0; i < 16; ++i) id.bytes[i] = static_cast<uint8_t>(i == 15 ? 0xAF : i);
  // Bytes 3, 2, 1, 0 - 5, 4 - 7, 6 - 8, 9 - 10 to 15.
  EXPECT_EQ(id.Text(), "{03020100-0504-0706-0809-0A0B0C0D0EAF}");

  constexpr ClassId parsed = ClassId::Parse("{7b1c3f52-4d0a-11cf-96b8-5a1e0c2d7f10}");
  EXPECT_EQ(parsed.bytes[0], 0x52);
  EXPECT_EQ(parsed.bytes[5], 0x4D);
  EXPECT_EQ(parsed.bytes[8], 0x96);
  EXPECT_EQ(parsed.Text(), "{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}");
  EXPECT_EQ(SASM::ProductIds::kControlClass.WideText(), u"{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}");
}

