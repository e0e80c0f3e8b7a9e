#include <gtest/gtest.h>

#include "engine/SystemPaths.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

using namespace SASM;

namespace {

constexpr char16_t kRoaming[] = u"C:\\Users\\Ann\\AppData\\Roaming";
constexpr char16_t kLocal[] = u"C:\\Users\\Ann\\AppData\\Local";

class SystemPathsTest : public ::testing::Test {
 protected:
  SystemPathsTest() {
    system_.SetFolder(Csidl::kAppData, kRoaming);
    system_.SetFolder(Csidl::kLocalAppData, kLocal);
    system_.SetFolder(Csidl::kProgramFiles, u"C:\\Program Files");
    system_.SetFolder(Csidl::kSystem, u"C:\\Windows\\System32");
  }

  // The location as UTF-8, or "(none)" when it isn't found.
  template <typename Lookup>
  std::string Ask(Lookup lookup) {
    MString path;
    return lookup(paths_, path) ? path.ToUtf8() : "(none)";
  }

  FakeRegistry registry_;
  FakeFileSystem files_;
  FakeSystem system_;
  SystemPaths paths_{Platform{&registry_, &files_, &system_}};
};

TEST_F(SystemPathsTest, PlayerRootsComeFromTheShellOrElseFromShellFolders) {
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerRoots(false, m); }), "C:\\Users\\Ann\\AppData\\Roaming");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerRoots(true, m); }), "C:\\Users\\Ann\\AppData\\Local");

  system_.RemoveFolder(Csidl::kAppData);
  system_.RemoveFolder(Csidl::kLocalAppData);
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerRoots(false, m); }), "(none)");
  registry_.SetString(RegistryHive::CurrentUser, SystemPaths::kShellFoldersKey, u"AppData", u"D:\\Roam");
  registry_.SetString(RegistryHive::CurrentUser, SystemPaths::kShellFoldersKey, u"Local AppData", u"D:\\Loc");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerRoots(false, m); }), "D:\\Roam");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerRoots(true, m); }), "D:\\Loc");
}

TEST_F(SystemPathsTest, PlayerDataFollowsTheLocalFlagButVendorDataStaysRoaming) {
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerDataRoot(false, m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Halcyonics\\Lumen Player");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerDataRoot(true, m); }),
            "C:\\Users\\Ann\\AppData\\Local\\Halcyonics\\Lumen Player");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetVendorDataRoot(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Corva\\Lumen Player");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetSettingsDirectory(true, m); }),
            "C:\\Users\\Ann\\AppData\\Local\\Halcyonics\\Lumen Player\\www.halcyonics.example");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetDigestFile(false, MString(u"pkg"), m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\pkg\\digest.s");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetProductDirectory(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin");
}

TEST_F(SystemPathsTest, VendorFoldersSitUnderTheRoamingRoot) {
  system_.SetFolder(Csidl::kLocalAppData, u"X:\\never used");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetAssetCacheDirectory(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Corva\\Lumen Player\\AssetCache");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetCacheDirectory(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Corva\\Lumen Player\\CLCache");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPrivateDataDirectory(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Corva\\Lumen Player\\CPSPrivateData2");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetIconCacheDirectory(m); }),
            "C:\\Users\\Ann\\AppData\\Roaming\\Corva\\Lumen Player\\Icon Cache");
}

TEST_F(SystemPathsTest, AddInsJoinTheirPartsWithSingleSeparators) {
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetAddInsDirectory(m); }),
            "C:\\Program Files\\Corva\\Lumen Player\\AddIns\\");
  system_.RemoveFolder(Csidl::kProgramFiles);
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetAddInsDirectory(m); }), "(none)");
}

TEST_F(SystemPathsTest, LowIntegrityRootAddsLowOnceAndPrefersTheLongForm) {
  files_.SetTempPath(u"C:\\Temp\\");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetLowIntegrityRoot(true, m); }), "C:\\Temp\\Low\\");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetLowIntegrityRoot(false, m); }), "C:\\Temp\\");
  files_.SetTempPath(u"C:\\Temp\\Low\\");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetLowIntegrityRoot(true, m); }), "C:\\Temp\\Low\\");
  files_.SetTempPath(u"C:\\USERS\\ANNLON~1\\Temp\\");
  files_.AddLongName(u"C:\\USERS\\ANNLON~1\\Temp\\Low", u"C:\\Users\\Ann Longname\\Temp\\Low");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetLowIntegrityRoot(true, m); }),
            "C:\\Users\\Ann Longname\\Temp\\Low\\");
}

TEST_F(SystemPathsTest, System32FollowsWow64ButTheConfigFileAsksWow64First) {
  system_.SetSystemWow64Directory(u"C:\\Windows\\SysWOW64");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetSystem32Path(m); }), "C:\\Windows\\system32");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetSystemConfigFilePath(m); }),
            "C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg");
  system_.SetWow64Process(true);
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetSystem32Path(m); }), "C:\\Windows\\SysWOW64");
  // A system with no WOW64 directory reads the file from the plain system directory.
  system_.SetSystemWow64Directory(u"");
  system_.SetWow64Process(false);
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetSystemConfigFilePath(m); }),
            "C:\\Windows\\system32\\Halcyons\\Lumen\\hms.cfg");
}

TEST_F(SystemPathsTest, PlayerDirectoryAsksWithTheCreateFlagAndFallsBackToNarrowText) {
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerDirectory(true, m); }),
            "C:\\Users\\Ann\\AppData\\Local\\Halcyonics\\Lumen Player");
  EXPECT_EQ(system_.FolderRequests().back(), Csidl::kLocalAppData | Csidl::kFlagCreate);

  system_.RemoveFolder(Csidl::kAppData);
  // Only one trailing separator is cut; the fake's code page is Latin-1.
  registry_.SetNarrowString(RegistryHive::CurrentUser, SystemPaths::kShellFoldersKey, u"AppData", "D:\\Caf\xE9//");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetPlayerDirectory(false, m); }),
            "D:\\Caf\xC3\xA9/\\Halcyonics\\Lumen Player");
}

TEST_F(SystemPathsTest, BareLibraryNamesJoinTheSystemFolderOnly) {
  system_.SetSystemDirectory(u"C:\\not\\this");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetShellLibraryPath(u"shlwapi.dll", m); }),
            "C:\\Windows\\System32\\shlwapi.dll");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetShellLibraryPath(u"D:\\lib\\x.dll", m); }), "D:\\lib\\x.dll");
  system_.RemoveFolder(Csidl::kSystem);
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetShellLibraryPath(u"Msimg32.dll", m); }), "(none)");
}

TEST_F(SystemPathsTest, LocationsBeyond260CharactersAreNotFound) {
  std::u16string deep = u"C:\\" + std::u16string(230, u'd');
  system_.SetFolder(Csidl::kAppData, deep);
  EXPECT_NE(Ask([](auto& p, auto& m) { return p.GetPlayerDataRoot(false, m); }), "(none)");
  EXPECT_EQ(Ask([](auto& p, auto& m) { return p.GetProductDirectory(m); }), "(none)");
}

}  // namespace
