#include "broker/BrokerFileRules.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeBrokerFilePlatform.h"

using SASM::BrokerFileRules;
using SASM::FakeBrokerFilePlatform;

TEST(BrokerFileRules, OpenFlagsFollowReadOnlyFirstThenTruncation) {
  struct Case {
    int32_t readOnly, truncate;
    uint32_t access, disposition, flags;
  };
  for (const Case& c : {Case{-1, 7, 0x80000000, 3, 0x08000000}, Case{0, 0, 0x40000000, 4, 0x10000000},
                        Case{0, -1, 0x40000000, 2, 0x10000000}}) {
    BrokerFileRules::OpenArguments open = BrokerFileRules::ForOpen(c.readOnly, c.truncate);
    EXPECT_EQ(open.access, c.access) << c.readOnly << "," << c.truncate;
    EXPECT_EQ(open.disposition, c.disposition) << c.readOnly << "," << c.truncate;
    EXPECT_EQ(open.flags, c.flags) << c.readOnly << "," << c.truncate;
  }
}

TEST(BrokerFileRules, AFileIsCreatedBeforeProtectionWhenTheOpenWouldCreateIt) {
  EXPECT_TRUE(BrokerFileRules::MustCreateBeforeProtecting(true, 2));
  for (uint32_t disposition : {1u, 3u, 4u, 5u}) EXPECT_FALSE(BrokerFileRules::MustCreateBeforeProtecting(true, disposition));
  for (uint32_t disposition : {1u, 2u, 4u}) EXPECT_TRUE(BrokerFileRules::MustCreateBeforeProtecting(false, disposition));
  for (uint32_t disposition : {3u, 5u}) EXPECT_FALSE(BrokerFileRules::MustCreateBeforeProtecting(false, disposition));
}

TEST(BrokerFileRules, AReadingOpenSharesWritingOnlyWhenItHasTo) {
  FakeBrokerFilePlatform files;
  files.AddFile(u"C:\\a.txt", "x");
  SASM::BrokerFilePlatform::Handle handle = 0;
  EXPECT_EQ(BrokerFileRules::OpenForReading(files, u"C:\\a.txt", 0x80000000, 3, 0, handle), 0u);
  ASSERT_EQ(files.Opens().size(), 1u);
  EXPECT_EQ(files.Opens()[0].shareMode, 1u);
  files.CloseHandle(handle);

  files.HoldForWriting(u"C:\\a.txt");
  EXPECT_EQ(BrokerFileRules::OpenForReading(files, u"C:\\a.txt", 0x80000000, 3, 0, handle), 0u);
  ASSERT_EQ(files.Opens().size(), 3u);
  EXPECT_EQ(files.Opens()[2].shareMode, 3u);
  EXPECT_TRUE(files.IsOpen(handle));

  // The second answer is the one that counts.
  EXPECT_EQ(BrokerFileRules::OpenForReading(files, u"C:\\none.txt", 0x80000000, 3, 0, handle), 2u);
  EXPECT_TRUE(BrokerFileRules::IsOpenFailure(handle));
}
