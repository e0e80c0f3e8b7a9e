#include "engine/StringVector.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using SASM::StringVector;

namespace {

// Growth fails while failNext is set, the way an exhausted heap would.
class FailableStringVector : public StringVector {
 public:
  bool failNext = false;

 protected:
  void** Reallocate(void** old, int32_t newCapacity) override {
    if (failNext) return nullptr;
    return StringVector::Reallocate(old, newCapacity);
  }
};

void Fill(StringVector& vector, int from, int to) {
  for (int i = from; i < to; ++i) ASSERT_TRUE(vector.Append(std::to_string(i).c_str()));
}

}  // namespace

TEST(StringVector, StoresItsOwnCopyOfEachText) {
  StringVector vector;
  char text[] = "lumen.dll";
  ASSERT_TRUE(vector.Append(text));
  text[0] = 'X';
  EXPECT_STREQ(vector.At(0), "lumen.dll");
  EXPECT_NE(vector.At(0), text);
  EXPECT_EQ(vector.At(1), nullptr);
  EXPECT_EQ(vector.At(-1), nullptr);
}

TEST(StringVector, CapacityStartsAtEightAndDoubles) {
  StringVector vector;
  EXPECT_EQ(vector.Capacity(), 8);
  Fill(vector, 0, 8);
  EXPECT_EQ(vector.Capacity(), 8);
  Fill(vector, 8, 9);
  EXPECT_EQ(vector.Capacity(), 16);
  Fill(vector, 9, 17);
  EXPECT_EQ(vector.Capacity(), 32);
  EXPECT_EQ(vector.Count(), 17);
  EXPECT_STREQ(vector.At(16), "16");
}

TEST(StringVector, FailedGrowthKeepsItemsAndSetsCapacityToCount) {
  FailableStringVector vector;
  Fill(vector, 0, 8);
  vector.failNext = true;
  EXPECT_FALSE(vector.Append("lost"));
  EXPECT_EQ(vector.Count(), 8);
  EXPECT_EQ(vector.Capacity(), 8);
  EXPECT_STREQ(vector.At(7), "7");

  vector.failNext = false;
  EXPECT_TRUE(vector.Append("kept"));
  EXPECT_EQ(vector.Capacity(), 16);
  EXPECT_STREQ(vector.At(8), "kept");
}
