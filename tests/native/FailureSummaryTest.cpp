#include "engine/FailureSummary.h"

#include <gtest/gtest.h>

#include "host/MemoryMessageLog.h"

using namespace SASM;

TEST(FailureSummary, LastSeriousEntryWinsOverLaterLoggedOnes) {
  MemoryMessageLog log;
  log.Add(2, 1033, MString(u"first"));
  log.Add(2, 1032, MString(u"C:\\x.ocx 80004005"));
  log.Add(1, 1015, MString(u"later"));
  FailureSummary summary = FailureSummary::Select(log, nullptr);
  ASSERT_TRUE(summary.hasEntry);
  EXPECT_EQ(summary.index, 1);
  EXPECT_EQ(summary.code, 1032);
  EXPECT_EQ(summary.text.ToUtf8(), "Error 1032: C:\\x.ocx 80004005");

  // An empty log reads no entry.
  MemoryMessageLog empty;
  FailureSummary none = FailureSummary::Select(empty, nullptr);
  EXPECT_FALSE(none.hasEntry);
  EXPECT_EQ(none.headingId, 0u);
}

TEST(FailureSummary, OnlyLoggedEntriesShowTheFirstBecauseTheWalkEndsAtZero) {
  MemoryMessageLog log;
  log.Add(1, 1017, MString::Empty());
  log.Add(1, 1021, MString::Empty());
  log.Add(0, 18, MString::Empty());
  FailureSummary summary = FailureSummary::Select(log, nullptr);
  EXPECT_EQ(summary.index, 0);
  EXPECT_EQ(summary.code, 1017);
}

TEST(FailureSummary, HeadingsFollowTheCode) {
  struct Case {
    int32_t code;
    uint32_t heading;
    uint32_t title;
  };
  for (Case c : {Case{1047, 75, 30}, Case{1040, 76, 0}, Case{1015, 0, 0}}) {
    MemoryMessageLog log;
    log.Add(2, c.code, MString(u"C:\\f"));
    FailureSummary summary = FailureSummary::Select(log, nullptr);
    EXPECT_EQ(summary.headingId, c.heading) << c.code;
    EXPECT_EQ(summary.titleId, c.title) << c.code;
  }
}
