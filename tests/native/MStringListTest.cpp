#include "engine/MStringList.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using SASM::MString;
using SASM::MStringList;

TEST(MStringList, IteratorWalksInOrderAndGivesEmptyPastTheEnd) {
  MStringList list;
  list.Add(MString(u"a"), MString(u"1"));
  list.Add(MString(u"b"), MString(u"2"));
  std::unique_ptr<MStringList::Iterator> it(list.Iterate());
  EXPECT_EQ(it->Value().View(), u"1");
  it->Next();
  it->Next();
  EXPECT_TRUE(it->AtEnd());
  EXPECT_TRUE(it->Key().IsEmpty());
  EXPECT_FALSE(it->Value().IsNull());
}

TEST(MStringList, ContainsMatchesWholeEntriesOrEntriesAsPrefixes) {
  MStringList list;
  EXPECT_FALSE(list.Contains(MString::Empty(), true));
  list.Add(MString(u"C:\\Windows\\"));
  EXPECT_TRUE(list.Contains(MString(u"C:\\Windows\\")));
  EXPECT_FALSE(list.Contains(MString(u"C:\\Windows\\System32")));
  EXPECT_TRUE(list.Contains(MString(u"C:\\Windows\\System32"), true));
  EXPECT_FALSE(list.Contains(MString(u"C:\\Win"), true));
  EXPECT_FALSE(list.Contains(MString(u"c:\\windows\\")));
}

TEST(MStringList, ClearResetsTheListAndCopesWithVeryLongLists) {
  MStringList list;
  list.Clear();
  EXPECT_EQ(list.head, nullptr);
  // Long enough that tearing down by recursion would exhaust the stack.
  for (int i = 0; i < 200000; ++i) list.Add(MString(u"x"));
  list.Clear();
  EXPECT_EQ(list.head, nullptr);
  EXPECT_EQ(list.tail, nullptr);
  EXPECT_EQ(list.Count(), 0);
  list.Add(MString(u"again"));
  EXPECT_EQ(list.Count(), 1);
}
