#include "broker/BrokerHresult.h"

#include <gtest/gtest.h>

using SASM::BrokerHresult;

TEST(BrokerHresult, PlatformErrorsBecomeWin32FacilityResultsButZeroAndNegativesStand) {
  EXPECT_EQ(BrokerHresult::FromPlatformError(5), static_cast<int32_t>(0x80070005));
  EXPECT_EQ(BrokerHresult::FromPlatformError(32), static_cast<int32_t>(0x80070020));
  // Only the low 16 bits survive.
  EXPECT_EQ(BrokerHresult::FromPlatformError(0x12345), static_cast<int32_t>(0x80072345));
  EXPECT_EQ(BrokerHresult::FromPlatformError(0x7FFFFFFF), static_cast<int32_t>(0x8007FFFF));

  EXPECT_EQ(BrokerHresult::FromPlatformError(0), 0);
  EXPECT_EQ(BrokerHresult::FromPlatformError(-1), -1);
  // Already a failure result: kept whole.
  EXPECT_EQ(BrokerHresult::FromPlatformError(static_cast<int32_t>(0x8007000E)), static_cast<int32_t>(0x8007000E));
}

