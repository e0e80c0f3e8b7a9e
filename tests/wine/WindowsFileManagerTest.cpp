// hms.cfg in the prefix's 32-bit system directory, read by the file manager.
#include "engine/WindowsFileManager.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include "engine/MString.h"
#include "engine/SystemConfigFile.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32FileSystem.h"
#include "engine/win32/Win32Platform.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

std::wstring ConfigDirectory() {
  wchar_t buffer[MAX_PATH];
  UINT n = GetSystemWow64DirectoryW(buffer, MAX_PATH);
  if (n == 0) n = GetSystemDirectoryW(buffer, MAX_PATH);
  return std::wstring(buffer, n) + L"\\Halcyons\\Lumen";
}

std::string Utf8(const std::wstring& text) {
  return MString(std::u16string_view(reinterpret_cast<const char16_t*>(text.data()), text.size())).ToUtf8();
}

using WineTest::Folder;

class WindowsFileManagerOverWin32 : public ::testing::Test {
 protected:
  void SetUp() override {
    WindowsFileManager::ForgetProcessValues();
    ASSERT_EQ(GetFileAttributesW(ConfigFile().c_str()), INVALID_FILE_ATTRIBUTES) << "left over from another run";
  }
  void TearDown() override { WindowsFileManager::ForgetProcessValues(); }
  static std::wstring ConfigFile() { return ConfigDirectory() + L"\\hms.cfg"; }
};

TEST_F(WindowsFileManagerOverWin32, ConfigFileInThe32BitSystemDirectoryIsRead) {
  WineTest::TempTree tree;
  tree.File(ConfigFile(), "\xEF\xBB\xBF# machine settings\r\nEnableLocalAppData = YES\r\nOther=1\r\nOther=two\r\n");
  Win32FileSystem files;
  SystemConfigFile config(files, FromWide(ConfigFile().c_str()));
  EXPECT_EQ(config.GetState(), SystemConfigFile::kUtf8Marked);
  EXPECT_EQ(config.Get("EnableLocalAppData"), "YES");
  EXPECT_EQ(config.Get("Other"), "two");

  WindowsFileManager manager(Win32Platform());
  EXPECT_EQ(manager.GetConfigFilePath(), Utf8(ConfigFile()));
  EXPECT_TRUE(manager.EnableLocalAppData());
  EXPECT_EQ(manager.GetPlayerDataPath(), Utf8(Folder(CSIDL_LOCAL_APPDATA) + L"\\Halcyonics\\Lumen Player"));
}

TEST_F(WindowsFileManagerOverWin32, NoConfigFileMeansRoamingPlayerData) {
  WindowsFileManager manager(Win32Platform());
  EXPECT_FALSE(manager.EnableLocalAppData());
  std::string roaming = Utf8(Folder(CSIDL_APPDATA));
  EXPECT_EQ(manager.GetPlayerDataPath(), roaming + "\\Halcyonics\\Lumen Player");
  EXPECT_EQ(manager.GetAssetCachePath(), roaming + "\\Corva\\Lumen Player\\AssetCache");
  EXPECT_EQ(manager.GetCacheDirectoryPath(), roaming + "\\Corva\\Lumen Player\\CLCache");
  EXPECT_EQ(manager.GetPrivateDataPath(), roaming + "\\Corva\\Lumen Player\\CPSPrivateData2");
}

TEST_F(WindowsFileManagerOverWin32, Utf16ConfigFileGivesDefaults) {
  WineTest::TempTree tree;
  tree.File(ConfigFile(), std::string("\xFF\xFE" "E\0=\0" "1\0", 8));
  WindowsFileManager manager(Win32Platform());
  EXPECT_FALSE(manager.EnableLocalAppData());
}

}  // namespace
