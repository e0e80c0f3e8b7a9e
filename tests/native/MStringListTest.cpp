#include "engine/MStringList.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using SASM::MString;
using SASM::MStringList;

namespace {

std::vector<std::u16string> Keys(const MStringList& list) {
  std::vector<std::u16string> keys;
  for (auto* node = list.head; node; node = node->next) keys.push_back(node->key.ToU16());
  return keys;
}

}  // namespace

TEST(MStringList, AddAppendsAtTheTailAndPlainTextIsBothKeyAndValue) {
  MStringList list;
  EXPECT_TRUE(list.Add(MString(u"k"), MString(u"v")));
  EXPECT_TRUE(list.Add(MString(u"plain")));
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(Keys(list), (std::vector<std::u16string>{u"k", u"plain"}));
  EXPECT_EQ(list.tail->value.View(), u"plain");
  EXPECT_EQ(list.tail->previous, list.head);
}

TEST(MStringList, IteratorWalksInOrderAndGivesEmptyPastTheEnd) {
  MStringList list;
  list.Add(MString(u"a"), MString(u"1"));
  list.Add(MString(u"b"), MString(u"2"));
  std::unique_ptr<MStringList::Iterator> it(list.Iterate());
  EXPECT_EQ(it->Key().View(), u"a");
  EXPECT_EQ(it->Value().View(), u"1");
  it->Next();
  EXPECT_EQ(it->Value().View(), u"2");
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
