#include "broker/ZoneTransferText.h"

#include <gtest/gtest.h>

using SASM::ZoneTransferText;

TEST(ZoneTransferText, AnInternetMarkReadsBackAsZoneThreeAndOnlyFromItsOwnSection) {
  EXPECT_EQ(ZoneTransferText::Compose(3), "[ZoneTransfer]\r\nZoneId=3\r\n");
  uint32_t zone = 0;
  ASSERT_TRUE(ZoneTransferText::ParseZoneId(ZoneTransferText::Compose(3), zone));
  EXPECT_EQ(zone, 3u);

  zone = 99;
  EXPECT_TRUE(ZoneTransferText::ParseZoneId("[other]\nZoneId=4\n[zonetransfer]\nReferrerUrl=x\n zoneid = 2 \n", zone));
  EXPECT_EQ(zone, 2u);
  EXPECT_FALSE(ZoneTransferText::ParseZoneId("[other]\r\nZoneId=4\r\n", zone));
  EXPECT_FALSE(ZoneTransferText::ParseZoneId("[ZoneTransfer]\r\nZoneId=x\r\n", zone));
  EXPECT_EQ(zone, 2u);
}

