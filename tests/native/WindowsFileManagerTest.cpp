#include <gtest/gtest.h>

#include "engine/WindowsFileManager.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kConfig[] = u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg";

class WindowsFileManagerTest : public WorldTest {
 protected:
  WindowsFileManagerTest() {
    WindowsFileManager::ForgetProcessValues();
    system_.SetSystemWow64Directory(u"C:\\Windows\\SysWOW64");
    system_.SetFolder(Csidl::kAppData, u"C:\\Users\\Z\\Roaming");
    system_.SetFolder(Csidl::kLocalAppData, u"C:\\Users\\Z\\Local");
  }
  ~WindowsFileManagerTest() override { WindowsFileManager::ForgetProcessValues(); }

  FakeFileSystem& files_ = world_.files;
  FakeSystem& system_ = world_.system;
  Platform platform_ = world_.GetPlatform();
};

TEST_F(WindowsFileManagerTest, MissingConfigFileMeansRoamingDataAndTheLocalFlagMovesOnlyPlayerData) {
  WindowsFileManager manager(platform_);
  EXPECT_FALSE(manager.EnableLocalAppData());
  EXPECT_EQ(manager.GetConfigFilePath(), "C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg");
  EXPECT_EQ(manager.GetPlayerDataPath(), "C:\\Users\\Z\\Roaming\\Halcyonics\\Lumen Player");

  files_.AddFile(kConfig, "EnableLocalAppData=y");
  WindowsFileManager::ForgetProcessValues();
  WindowsFileManager local(platform_);
  EXPECT_EQ(local.GetPlayerDataPath(), "C:\\Users\\Z\\Local\\Halcyonics\\Lumen Player");
  EXPECT_EQ(local.GetAssetCachePath(), "C:\\Users\\Z\\Roaming\\Corva\\Lumen Player\\AssetCache");
}

TEST_F(WindowsFileManagerTest, ProcessValuesAreFilledOnceInUtf8) {
  system_.SetFolder(Csidl::kAppData, u"C:\\Users\\Zo\u00EB\\Roaming");
  WindowsFileManager first(platform_);
  EXPECT_EQ(first.GetAssetCachePath(), "C:\\Users\\Zo\xC3\xAB\\Roaming\\Corva\\Lumen Player\\AssetCache");

  // Another manager, another folder: the value is kept for the process.
  system_.SetFolder(Csidl::kAppData, u"E:\\Elsewhere");
  WindowsFileManager second(platform_);
  EXPECT_EQ(second.GetAssetCachePath(), "C:\\Users\\Zo\xC3\xAB\\Roaming\\Corva\\Lumen Player\\AssetCache");
  EXPECT_EQ(second.GetCacheDirectoryPath(), "E:\\Elsewhere\\Corva\\Lumen Player\\CLCache");
}

TEST_F(WindowsFileManagerTest, ValueNotFoundStaysEmptyAndIsTriedAgain) {
  system_.RemoveFolder(Csidl::kAppData);
  WindowsFileManager manager(platform_);
  EXPECT_EQ(manager.GetPrivateDataPath(), "");
  system_.SetFolder(Csidl::kAppData, u"C:\\Back");
  EXPECT_EQ(manager.GetPrivateDataPath(), "C:\\Back\\Corva\\Lumen Player\\CPSPrivateData2");
}

}  // namespace
