// Locations composed over the prefix's real shell folders and registry.
#include "engine/SystemPaths.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include "engine/VendorIdentity.h"
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

TEST(SystemPathsOverWin32, RealShellFoldersComposeTheLocations) {
  SystemPaths paths(Win32Platform());
  std::wstring roaming = Folder(CSIDL_APPDATA);
  std::wstring local = Folder(CSIDL_LOCAL_APPDATA);
  std::wstring settings = ToWide(Vendor::kSettingsDirectory);
  ASSERT_FALSE(roaming.empty());
  ASSERT_NE(roaming, local);
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetPlayerRoots(true, m); }), local);
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetPlayerDataRoot(false, m); }),
            roaming + L"\\Halcyonics\\Lumen Player");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSettingsDirectory(true, m); }),
            local + L"\\Halcyonics\\Lumen Player\\" + settings);
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetVendorDataRoot(m); }), roaming + L"\\Corva\\Lumen Player");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetIconCacheDirectory(m); }),
            roaming + L"\\Corva\\Lumen Player\\Icon Cache");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetProductDirectory(m); }),
            roaming + L"\\Halcyonics\\Lumen Player\\" + settings + L"\\bin");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetAddInsDirectory(m); }),
            Folder(CSIDL_PROGRAM_FILES) + L"\\Corva\\Lumen Player\\AddIns\\");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetShellLibraryPath(u"shlwapi.dll", m); }),
            Folder(CSIDL_SYSTEM) + L"\\shlwapi.dll");
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

TEST(SystemPathsOverWin32, SystemDirectoriesOfA64BitProcess) {
  SystemPaths paths(Win32Platform());
  // Not under WOW64, so the plain system directory answers...
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSystem32Path(m); }), WineTest::SystemDirectory());
  // ...but the configuration file is read from the 32-bit one, which this prefix has (syswow64).
  ASSERT_FALSE(Wow64Directory().empty());
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetSystemConfigFilePath(m); }),
            Wow64Directory() + L"\\Halcyons\\Lumen\\hms.cfg");
}

TEST(SystemPathsOverWin32, LowIntegrityRootIsTheTempDirectorysLowChild) {
  SystemPaths paths(Win32Platform());
  wchar_t temp[MAX_PATH + 1];
  DWORD n = GetTempPathW(MAX_PATH + 1, temp);
  ASSERT_GT(n, 0u);
  // The sub-directory doesn't exist, so no long form can be made and the text stands.
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetLowIntegrityRoot(true, m); }),
            std::wstring(temp, n) + L"Low\\");
  EXPECT_EQ(Ask(paths, [](auto& p, auto& m) { return p.GetLowIntegrityRoot(false, m); }), std::wstring(temp, n));
}

}  // namespace
