#include <gtest/gtest.h>

#include "tests/fakes/FakeFileSystem.h"

using namespace SASM;

namespace {

constexpr int32_t kRead = static_cast<int32_t>(FileOpenMode::Read);
constexpr int32_t kWrite = static_cast<int32_t>(FileOpenMode::Write);

TEST(FakeFileSystem, InjectedFailuresAnswerEveryOperationOnThePathButTheListingStillShowsIt) {
  FakeFileSystem files;
  for (const char16_t* name : {u"C:\\Dir\\locked.dll", u"C:\\Dir\\denied.dll", u"C:\\Dir\\hidden.dll"})
    files.AddFile(name, "x");
  files.Lock(u"C:\\Dir\\locked.dll");
  files.Deny(u"c:/dir/DENIED.dll");
  files.Hide(u"C:\\Dir\\hidden.dll");
  FileHandleId handle = 0;
  std::string bytes;
  uint32_t attributes = 0;
  EXPECT_EQ(files.Open(u"C:\\Dir\\locked.dll", kRead, handle), 32);
  EXPECT_EQ(files.Delete(u"C:\\Dir\\locked.dll"), 32);
  EXPECT_EQ(files.Open(u"C:\\Dir\\denied.dll", kWrite, handle), 5);
  EXPECT_EQ(files.DeleteAtReboot(u"C:\\Dir\\denied.dll"), 5);
  EXPECT_EQ(files.ReadAll(u"C:\\Dir\\hidden.dll", bytes), 2);
  EXPECT_EQ(files.GetAttributes(u"C:\\Dir\\hidden.dll", attributes), 2);
  std::vector<std::u16string> names;
  EXPECT_EQ(files.EnumerateDirectory(u"C:\\Dir", names), 0);
  EXPECT_EQ(names, (std::vector<std::u16string>{u".", u"..", u"denied.dll", u"hidden.dll", u"locked.dll"}));
}

TEST(FakeFileSystem, HandlesShareReadingOnly) {
  FakeFileSystem files;
  files.AddFile(u"C:\\f.txt", "12345");
  FileHandleId reader = 0, second = 0, writer = 0;
  ASSERT_EQ(files.Open(u"C:\\f.txt", kRead, reader), 0);
  EXPECT_EQ(files.Open(u"C:\\F.TXT", kRead, second), 0);
  EXPECT_EQ(files.Open(u"C:\\f.txt", kWrite, writer), 32);
  EXPECT_EQ(files.Delete(u"C:\\f.txt"), 32);
  uint64_t size = 0;
  EXPECT_EQ(files.GetSize(reader, size), 0);
  EXPECT_EQ(size, 5u);
  files.Close(reader);
  files.Close(second);
  ASSERT_EQ(files.Open(u"C:\\f.txt", 1, writer), 0);
  EXPECT_EQ(files.Open(u"C:\\f.txt", kRead, reader), 32);
  files.Close(writer);
  EXPECT_EQ(files.OpenHandles(), 0u);
}

TEST(FakeFileSystem, MissingPathsAndDirectoriesAnswerAsThePlatformDoes) {
  FakeFileSystem files;
  files.AddDirectory(u"C:\\Full\\Sub");
  files.AddFile(u"C:\\Full\\ro.txt", "", FileAttribute::kReadOnly);
  FileHandleId handle = 0;
  std::vector<std::u16string> names;
  EXPECT_EQ(files.Open(u"C:\\Full\\none.txt", kRead, handle), 2);
  EXPECT_EQ(files.Open(u"C:\\None\\none.txt", kRead, handle), 3);
  EXPECT_EQ(files.Open(u"C:\\Full\\ro.txt", kWrite, handle), 5);
  EXPECT_EQ(files.Delete(u"C:\\Full\\ro.txt"), 5);
  EXPECT_EQ(files.CreateDirectory(u"C:\\Full\\Sub"), 183);
  EXPECT_EQ(files.CreateDirectory(u"C:\\None\\Sub"), 3);
  EXPECT_EQ(files.RemoveDirectory(u"C:\\Full"), 145);
  EXPECT_EQ(files.RemoveDirectory(u"C:\\Full\\Sub"), 0);
  EXPECT_EQ(files.EnumerateDirectory(u"C:\\Gone", names), 3);
  EXPECT_EQ(files.DeleteAtReboot(u"C:\\Full\\ro.txt"), 0);
  EXPECT_EQ(files.RebootDeletes(), std::vector<std::u16string>{u"C:\\Full\\ro.txt"});
}

}  // namespace
