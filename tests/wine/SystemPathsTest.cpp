// Locations composed over the prefix's real shell folders and registry, and
// hms.cfg read from the 32-bit system directory by the file manager.
#include "engine/SystemPaths.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include "engine/VendorIdentity.h"
#include "engine/WindowsFileManager.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32FileSystem.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32Registry.h"
#include "engine/win32/Win32System.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::Folder;

std::wstring Wow64Directory() {
  wchar_t buffer[MAX_PATH];
  UINT n = GetSystemWow64DirectoryW(buffer, MAX_PATH);
  return std::wstring(buffer, n);
}

template <typename Lookup>
std::wstring Ask(const SystemPaths& paths, Lookup lookup) {
  MString path;
  return lookup(paths, path) ? ToWide(path.View()) : L"(none)";
}

// The real system with the shell's folder function failing, so the registry must answer.
class SystemWithoutShellFolders : public Win32System {
 public:
  bool GetFolderPath(int32_t, std::u16string&) override { return false; }
};

TEST(SystemPathsOverWin32, RealShellFoldersAndSystemDirectoriesComposeTheLocations) {
  SystemPaths paths(Win32Platform());
  std::wstring roaming = Folder(CSIDL_APPDATA);
  std::wstring local = Folder(CSIDL_LOCAL_APPDATA);
  ASSERT_FALSE(roaming.empty());
  ASSERT_NE(roaming, local);
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSettingsDirectory(true, m); }),
            local + L"\\Halcyonics\\Lumen Player\\" + ToWide(Vendor::kSettingsDirectory));
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetVendorDataRoot(m); }), roaming + L"\\Corva\\Lumen Player");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetAddInsDirectory(m); }),
            Folder(CSIDL_PROGRAM_FILES) + L"\\Corva\\Lumen Player\\AddIns\\");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetShellLibraryPath(u"shlwapi.dll", m); }),
            Folder(CSIDL_SYSTEM) + L"\\shlwapi.dll");
  // Not under WOW64, so the plain system directory answers, but the configuration
  // file is read from the 32-bit one, which this prefix has (syswow64).
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSystem32Path(m); }), WineTest::SystemDirectory());
  ASSERT_FALSE(Wow64Directory().empty());
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSystemConfigFilePath(m); }),
            Wow64Directory() + L"\\Halcyons\\Lumen\\hms.cfg");
  // The sub-directory doesn't exist, so no long form can be made and the text stands.
  wchar_t temp[MAX_PATH + 1];
  std::wstring tempPath(temp, GetTempPathW(MAX_PATH + 1, temp));
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetLowIntegrityRoot(true, m); }), tempPath + L"Low\\");
}

TEST(SystemPathsOverWin32, ShellFoldersValuesStandInForTheShell) {
  Win32Registry registry;
  Win32FileSystem files;
  SystemWithoutShellFolders system;
  SystemPaths paths(Platform{&registry, &files, &system});
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetPlayerRoots(false, m); }), Folder(CSIDL_APPDATA));
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetPlayerRoots(true, m); }), Folder(CSIDL_LOCAL_APPDATA));
  // The file manager's form reads the narrow value instead.
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetPlayerDirectory(true, m); }),
            Folder(CSIDL_LOCAL_APPDATA) + L"\\Halcyonics\\Lumen Player");
}

TEST(WindowsFileManagerOverWin32, ConfigFileInThe32BitSystemDirectoryMovesPlayerDataToTheLocalFolder) {
  const std::wstring config = Wow64Directory() + L"\\Halcyons\\Lumen\\hms.cfg";
  ASSERT_FALSE(WineTest::FileExists(config)) << "left over from another run";
  WindowsFileManager::ForgetProcessValues();
  {
    WineTest::TempTree tree;
    tree.File(config, "\xEF\xBB\xBF# machine settings\r\nEnableLocalAppData = YES\r\n");
    WindowsFileManager manager(Win32Platform());
    EXPECT_EQ(manager.GetConfigFilePath(), WineTest::Utf8(config));
    EXPECT_TRUE(manager.EnableLocalAppData());
    EXPECT_EQ(manager.GetPlayerDataPath(), WineTest::Utf8(Folder(CSIDL_LOCAL_APPDATA) + L"\\Halcyonics\\Lumen Player"));
    // The vendor's caches stay roaming.
    EXPECT_EQ(manager.GetAssetCachePath(),
              WineTest::Utf8(Folder(CSIDL_APPDATA) + L"\\Corva\\Lumen Player\\AssetCache"));
  }
  WindowsFileManager::ForgetProcessValues();
}

}  // namespace
