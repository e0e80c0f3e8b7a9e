#include <gtest/gtest.h>

#include "removal/FileTreeCleaner.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr uint64_t kSecond = 10000000;
constexpr uint64_t kNow = 133500000000000000ull;

class FileTreeCleanerTest : public WorldTest {
 protected:
  FileTreeCleanerTest() {
    world_.system.SetFileTime(kNow);
    world_.files.AddDirectory(u"C:\\Cache");
  }
  void File(const char16_t* path, uint64_t ageSeconds) {
    world_.files.AddFile(path);
    world_.files.SetLastWriteTime(path, kNow - ageSeconds * kSecond);
  }
  bool ByAge(uint32_t minAge, uint32_t maxAge, bool& emptied) {
    return Cleaner().DeleteFilesByAge(MString(u"C:\\Cache"), minAge, maxAge, emptied);
  }
  FileTreeCleaner Cleaner() { return FileTreeCleaner(world_.GetPlatform()); }
};

TEST_F(FileTreeCleanerTest, OnlyFilesStrictlyBetweenTheAgesGo) {
  File(u"C:\\Cache\\minimum.bin", 60);
  File(u"C:\\Cache\\between.bin", 61);
  File(u"C:\\Cache\\maximum.bin", 3600);
  bool emptied = true;
  EXPECT_TRUE(ByAge(60, 3600, emptied));
  EXPECT_FALSE(emptied);
  EXPECT_EQ(world_.Existing({u"C:\\Cache\\minimum.bin", u"C:\\Cache\\between.bin", u"C:\\Cache\\maximum.bin"}),
            (Paths{u"C:\\Cache\\minimum.bin", u"C:\\Cache\\maximum.bin"}));
}

TEST_F(FileTreeCleanerTest, EmptiedFoldersGoAndAYoungFileKeepsItsFolders) {
  File(u"C:\\Cache\\a\\b\\old.bin", 100);
  File(u"C:\\Cache\\c\\old.bin", 100);
  File(u"C:\\Cache\\c\\d\\now.bin", 0);  // a minimum of 0 doesn't reach the current instant
  bool emptied = true;
  EXPECT_TRUE(ByAge(0, 1000, emptied));
  EXPECT_FALSE(emptied);
  EXPECT_EQ(world_.Existing({u"C:\\Cache\\a", u"C:\\Cache\\c\\old.bin", u"C:\\Cache\\c\\d\\now.bin"}),
            Paths{u"C:\\Cache\\c\\d\\now.bin"});
}

TEST_F(FileTreeCleanerTest, TimeAndSearchFailuresAnswerFalseAndAnUnsearchableSubfolderCountsAsSomethingLeft) {
  bool emptied = false;
  EXPECT_TRUE(ByAge(0, 1000, emptied));
  EXPECT_TRUE(emptied);
  File(u"C:\\Cache\\locked\\old.bin", 100);
  world_.files.FailPath(u"C:\\Cache\\locked", 5);
  EXPECT_TRUE(ByAge(0, 1000, emptied));
  EXPECT_FALSE(emptied);
  world_.files.FailPath(u"C:\\Cache", 5);
  EXPECT_FALSE(ByAge(0, 1000, emptied));
  world_.system.SetFileTime(0);
  EXPECT_FALSE(ByAge(0, 1000, emptied));
}

TEST_F(FileTreeCleanerTest, DeleteTreeRemovesEverythingOrFailsWhenSomethingStaysOrIsBeyondItsRoom) {
  File(u"C:\\Cache\\a\\b\\x.bin", 1);
  File(u"C:\\Cache\\y.bin", 1);
  EXPECT_TRUE(Cleaner().DeleteTree(MString(u"C:\\Cache")));
  EXPECT_FALSE(world_.files.Exists(u"C:\\Cache"));
  world_.files.AddFile(u"C:\\Cache\\held.bin", "", FileAttribute::kReadOnly);
  EXPECT_FALSE(Cleaner().DeleteTree(MString(u"C:\\Cache")));
  EXPECT_TRUE(world_.files.Exists(u"C:\\Cache\\held.bin"));

  std::u16string deep = u"C:\\" + std::u16string(256, u'd');
  world_.files.AddFile(deep + u"\\x.bin");
  EXPECT_FALSE(Cleaner().DeleteTree(MString(std::u16string_view(deep))));
  EXPECT_TRUE(world_.files.Exists(deep + u"\\x.bin"));
}

// A file system whose removal of one folder answers an error after the folder went.
class ComplainingFileSystem : public FakeFileSystem {
 public:
  int32_t RemoveDirectory(std::u16string_view path) override {
    int32_t result = FakeFileSystem::RemoveDirectory(path);
    return path == complainAbout ? 5 : result;
  }
  std::u16string complainAbout;
};

TEST_F(FileTreeCleanerTest, DeleteTreeAnswersWithTheLastSubdirectoryOnly) {
  ComplainingFileSystem files;
  Platform platform = world_.GetPlatform();
  platform.files = &files;
  FileTreeCleaner cleaner(platform);
  // Kept as it stands: a later subdirectory's answer overwrites an earlier one.
  for (auto [complaint, result] : {std::pair{u"C:\\Tree\\a", true}, std::pair{u"C:\\Tree\\b", false}}) {
    files.AddDirectory(u"C:\\Tree\\a");
    files.AddDirectory(u"C:\\Tree\\b");
    files.complainAbout = complaint;
    EXPECT_EQ(cleaner.DeleteTree(MString(u"C:\\Tree")), result);
  }
}

}  // namespace
