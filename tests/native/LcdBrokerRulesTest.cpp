#include <gtest/gtest.h>

#include "connections/LcdBrokerRules.h"

using SASM::LcdBrokerRules;
using Shape = SASM::LcdBrokerRules::ArrayShape;
using Step = SASM::LcdBrokerRules::MessageDataStep;

namespace {

Shape Bytes(uint32_t count) { return Shape{true, 1, 1, 0, count}; }

}  // namespace

TEST(LcdBrokerRules, MessageArrayIsAcceptedUpTo40960OneByteElementsFromZeroAndOfNoOtherShape) {
  EXPECT_TRUE(LcdBrokerRules::AcceptsMessageArray(Bytes(0)));
  EXPECT_TRUE(LcdBrokerRules::AcceptsMessageArray(Bytes(40960)));
  EXPECT_FALSE(LcdBrokerRules::AcceptsMessageArray(Bytes(40961)));
  EXPECT_FALSE(LcdBrokerRules::AcceptsMessageArray(Bytes(0xFFFFFFFFu)));
  // Missing, lower bound one, two dimensions, wide elements.
  for (const Shape& shape :
       {Shape{false, 1, 1, 0, 10}, Shape{true, 1, 1, 1, 10}, Shape{true, 2, 1, 0, 10}, Shape{true, 1, 2, 0, 10}})
    EXPECT_FALSE(LcdBrokerRules::AcceptsMessageArray(shape));
}

TEST(LcdBrokerRules, DispatchOutcomesMapAndAnyNonZeroFormatCountsAsFound) {
  EXPECT_EQ(LcdBrokerRules::DispatchResult(0), 1);
  EXPECT_EQ(LcdBrokerRules::DispatchResult(1), 0);
  EXPECT_EQ(LcdBrokerRules::DispatchResult(2), static_cast<int32_t>(0x80070057));

  EXPECT_EQ(LcdBrokerRules::FormatResult(3), 0);
  // A stored plain 2 reads back as -46 and is still a listener.
  EXPECT_EQ(LcdBrokerRules::FormatResult(-46), 0);
  EXPECT_EQ(LcdBrokerRules::FormatResult(0), 1);
  EXPECT_EQ(LcdBrokerRules::AnswerResult(true), 0);
  EXPECT_EQ(LcdBrokerRules::AnswerResult(false), 1);
}

TEST(LcdBrokerRules, MessageDataSucceedsEvenWhenTheArrayCouldNotBeFilled) {
  EXPECT_EQ(LcdBrokerRules::MessageDataResult(Step::kNoMessage), 1);
  EXPECT_EQ(LcdBrokerRules::MessageDataResult(Step::kNoData), static_cast<int32_t>(0x80004005));
  EXPECT_EQ(LcdBrokerRules::MessageDataResult(Step::kArrayNotCreated), static_cast<int32_t>(0x80004005));
  EXPECT_EQ(LcdBrokerRules::MessageDataResult(Step::kArrayNotAccessed), 0);
  EXPECT_EQ(LcdBrokerRules::MessageDataResult(Step::kCopied), 0);
}
