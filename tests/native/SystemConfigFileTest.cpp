#include <gtest/gtest.h>

#include "engine/SystemConfigFile.h"
#include "tests/fakes/FakeFileSystem.h"

using namespace SASM;

namespace {

constexpr char16_t kPath[] = u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg";

SystemConfigFile Read(std::string content) {
  FakeFileSystem files;
  files.AddFile(kPath, std::move(content));
  return SystemConfigFile(files, kPath);
}

TEST(SystemConfigFile, ShortOrUnreadableFileIsAbsentEvenWhenValid) {
  SystemConfigFile shortFile = Read("a=b");
  EXPECT_EQ(shortFile.GetState(), SystemConfigFile::kAbsent);
  EXPECT_EQ(Read("a=bc").Get("a"), "bc");
  FakeFileSystem files;
  EXPECT_EQ(SystemConfigFile(files, kPath).GetState(), SystemConfigFile::kAbsent);
  files.AddFile(kPath, "EnableLocalAppData=1");
  files.Lock(kPath);
  SystemConfigFile locked(files, kPath);
  EXPECT_EQ(locked.GetState(), SystemConfigFile::kAbsent);
  EXPECT_EQ(locked.Count(), 0u);
}

TEST(SystemConfigFile, Utf8MarkIsSkippedAndUtf16MarksGiveDefaults) {
  SystemConfigFile utf8 = Read("\xEF\xBB\xBFkey=value");
  EXPECT_EQ(utf8.GetState(), SystemConfigFile::kUtf8Marked);
  EXPECT_EQ(utf8.Get("key"), "value");

  SystemConfigFile little = Read(std::string("\xFF\xFEk\0=\0v\0\nk=v", 11));
  EXPECT_EQ(little.GetState(), SystemConfigFile::kUtf16Marked);
  EXPECT_EQ(little.Count(), 0u);

  // Half a mark is ordinary text and stays part of the first key.
  SystemConfigFile partial = Read("\xEF\xBBkey=value");
  EXPECT_EQ(partial.GetState(), SystemConfigFile::kPlain);
  EXPECT_EQ(partial.Get("key"), "value");
}

TEST(SystemConfigFile, FirstEqualsSplitsAndBytesUpTo32AndFrom128AreTrimmed) {
  SystemConfigFile config = Read(" \tkey one \x01= a=b \x1F\r\nx=y");
  EXPECT_EQ(config.Get("key one"), "a=b");
  SystemConfigFile high = Read("\xC3\xA9t\xC3\xA9=caf\xC3\xA9\nna\xC3\xAFve=x\xFF");
  EXPECT_EQ(high.Get("t"), "caf");
  EXPECT_EQ(high.Get("na\xC3\xAFve"), "x");
}

TEST(SystemConfigFile, LaterLineWinsKeysDifferingInCaseAreTwoAndLongLinesAreRead) {
  SystemConfigFile config = Read("Key=1\nkey=2\nKey=3\n");
  EXPECT_EQ(config.Get("Key"), "3");
  EXPECT_EQ(config.Get("key"), "2");
  EXPECT_EQ(config.Get("KEY"), "");

  std::string value(5000, 'v');
  SystemConfigFile longLine = Read("long=" + value + "\nafter=1");
  EXPECT_EQ(longLine.Get("long"), value);
  EXPECT_EQ(longLine.Get("after"), "1");
}

TEST(SystemConfigFile, TruthIsAWordOfYesOrANonZeroNumber) {
  for (const char* text :
       {"true", "T", "yes", "y", "-1", "007", " 5", "12abc", "99999999999999999999"})
    EXPECT_TRUE(SystemConfigFile::IsTrue(text)) << text;
  for (const char* text : {"", "-0", "no", "tru", "yes!", "0x10"})
    EXPECT_FALSE(SystemConfigFile::IsTrue(text)) << text;
}

}  // namespace
