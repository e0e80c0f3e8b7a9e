#include "engine/FilePattern.h"

#include <gtest/gtest.h>

using SASM::FilePattern;
using SASM::MString;
using SASM::MStringList;

namespace {

void Fill(MStringList& list, std::initializer_list<const char16_t*> names) {
  for (const char16_t* name : names) list.Add(MString(name));
}

}  // namespace

TEST(FilePattern, PrefixIsBeforeTheFirstColonSuffixAfterTheLastAndAnEntryNeedsBoth) {
  FilePattern several(MString(u"lumen:middle:.dll"));
  EXPECT_EQ(several.Prefix().View(), u"lumen");
  EXPECT_EQ(several.Suffix().View(), u".dll");
  FilePattern edges(MString(u":.ocx:"));
  EXPECT_TRUE(edges.Prefix().IsEmpty());
  EXPECT_TRUE(edges.Suffix().IsEmpty());

  FilePattern pattern(MString(u"lumen:x:.dll"));
  EXPECT_TRUE(pattern.Matches(MString(u"lumen_28.dll")));
  EXPECT_TRUE(pattern.Matches(MString(u"lumen.dll")));  // the middle part is ignored
  EXPECT_FALSE(pattern.Matches(MString(u"Lumen_28.dll")));
  // Prefix and suffix may overlap.
  EXPECT_TRUE(FilePattern(MString(u"ab:b")).Matches(MString(u"ab")));
}

TEST(FilePattern, SingleFileFormTakesTheLastMatchJoinedAsAPath) {
  MStringList entries;
  Fill(entries, {u"lumen_1.dll", u"other.txt", u"lumen_2.dll", u"readme"});
  FilePattern pattern(MString(u"lumen:.dll"));
  MString path;
  EXPECT_TRUE(pattern.FindLast(entries, MString(u"C:\\Sys\\Halcyons\\Lumen\\"), path));
  EXPECT_EQ(path.View(), u"C:\\Sys\\Halcyons\\Lumen\\lumen_2.dll");

  MString untouched(u"before");
  EXPECT_FALSE(FilePattern(MString(u"none:")).FindLast(entries, MString(u"C:\\"), untouched));
  EXPECT_EQ(untouched.View(), u"before");
}

TEST(FilePattern, MultiFileFormAddsDirectoryBackslashAndEntryForEachMatch) {
  MStringList entries;
  Fill(entries, {u".", u"..", u"Lumen_a.dat", u"Lumen_b.dat", u"x.dat"});
  MStringList out;
  out.Add(MString(u"kept"));
  EXPECT_EQ(FilePattern(MString(u"Lumen_:.dat")).CollectAll(entries, MString(u"D:\\bin"), out), 2);
  ASSERT_EQ(out.Count(), 3);
  EXPECT_EQ(out.head->next->key.View(), u"D:\\bin\\Lumen_a.dat");
  EXPECT_EQ(out.tail->value.View(), u"D:\\bin\\Lumen_b.dat");
  // Plain concatenation: a directory that already ends in "\" gets a second one.
  MStringList doubled;
  FilePattern(MString(u"x")).CollectAll(entries, MString(u"D:\\"), doubled);
  EXPECT_EQ(doubled.head->key.View(), u"D:\\\\x.dat");
}
