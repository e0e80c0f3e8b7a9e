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
