#include <gtest/gtest.h>

#include "engine/SystemPaths.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

using Getter = bool (SystemPaths::*)(MString&) const;
using LocalGetter = bool (SystemPaths::*)(bool, MString&) const;

class SystemPathsTest : public WorldTest {
 protected:
  SystemPathsTest() {
    world_.system.SetFolder(Csidl::kAppData, u"C:\\Users\\Ann\\AppData\\Roaming");
    world_.system.SetFolder(Csidl::kLocalAppData, u"C:\\Users\\Ann\\AppData\\Local");
    world_.system.SetFolder(Csidl::kProgramFiles, u"C:\\Program Files");
    world_.system.SetFolder(Csidl::kSystem, u"C:\\Windows\\System32");
  }

  // The location as UTF-8, or "(none)" when it isn't found.
  std::string Ask(Getter get) {
    MString path;
    return (paths_.*get)(path) ? path.ToUtf8() : "(none)";
  }
  std::string Ask(LocalGetter get, bool local) {
    MString path;
    return (paths_.*get)(local, path) ? path.ToUtf8() : "(none)";
  }

  SystemPaths paths_{world_.GetPlatform()};
};

TEST_F(SystemPathsTest, PlayerRootsComeFromTheShellOrElseFromShellFolders) {
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerRoots, false), "C:\\Users\\Ann\\AppData\\Roaming");
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerRoots, true), "C:\\Users\\Ann\\AppData\\Local");

  world_.system.RemoveFolder(Csidl::kAppData);
  world_.system.RemoveFolder(Csidl::kLocalAppData);
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerRoots, false), "(none)");
  world_.registry.SetString(RegistryHive::CurrentUser, SystemPaths::kShellFoldersKey, u"AppData", u"D:\\Roam");
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerRoots, false), "D:\\Roam");
}

TEST_F(SystemPathsTest, PlayerDataFollowsTheLocalFlagButVendorDataStaysRoaming) {
  const std::string roaming = "C:\\Users\\Ann\\AppData\\Roaming\\", local = "C:\\Users\\Ann\\AppData\\Local\\";
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerDataRoot, false), roaming + "Halcyonics\\Lumen Player");
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerDataRoot, true), local + "Halcyonics\\Lumen Player");
  EXPECT_EQ(Ask(&SystemPaths::GetVendorDataRoot), roaming + "Corva\\Lumen Player");
  EXPECT_EQ(Ask(&SystemPaths::GetSettingsDirectory, true), local + "Halcyonics\\Lumen Player\\www.halcyonics.example");
  EXPECT_EQ(Ask(&SystemPaths::GetProductDirectory),
            roaming + "Halcyonics\\Lumen Player\\www.halcyonics.example\\bin");

  // The vendor's folders sit under the roaming root whatever the local one says.
  world_.system.SetFolder(Csidl::kLocalAppData, u"X:\\never used");
  const std::string vendor = roaming + "Corva\\Lumen Player\\";
  EXPECT_EQ(Ask(&SystemPaths::GetAssetCacheDirectory), vendor + "AssetCache");
}

TEST_F(SystemPathsTest, LowIntegrityRootAddsLowOnceAndPrefersTheLongForm) {
  world_.files.SetTempPath(u"C:\\Temp\\");
  EXPECT_EQ(Ask(&SystemPaths::GetLowIntegrityRoot, true), "C:\\Temp\\Low\\");
  EXPECT_EQ(Ask(&SystemPaths::GetLowIntegrityRoot, false), "C:\\Temp\\");
  world_.files.SetTempPath(u"C:\\USERS\\ANNLON~1\\Temp\\");
  world_.files.AddLongName(u"C:\\USERS\\ANNLON~1\\Temp\\Low", u"C:\\Users\\Ann Longname\\Temp\\Low");
  EXPECT_EQ(Ask(&SystemPaths::GetLowIntegrityRoot, true), "C:\\Users\\Ann Longname\\Temp\\Low\\");
}

TEST_F(SystemPathsTest, System32FollowsWow64ButTheConfigFileAsksWow64First) {
  world_.system.SetSystemWow64Directory(u"C:\\Windows\\SysWOW64");
  EXPECT_EQ(Ask(&SystemPaths::GetSystem32Path), "C:\\Windows\\system32");
  EXPECT_EQ(Ask(&SystemPaths::GetSystemConfigFilePath), "C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg");
  world_.system.SetWow64Process(true);
  EXPECT_EQ(Ask(&SystemPaths::GetSystem32Path), "C:\\Windows\\SysWOW64");
  // A system with no WOW64 directory reads the file from the plain system directory.
  world_.system.SetSystemWow64Directory(u"");
  world_.system.SetWow64Process(false);
  EXPECT_EQ(Ask(&SystemPaths::GetSystemConfigFilePath), "C:\\Windows\\system32\\Halcyons\\Lumen\\hms.cfg");
}

TEST_F(SystemPathsTest, PlayerDirectoryAsksWithTheCreateFlagAndFallsBackToNarrowText) {
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerDirectory, true), "C:\\Users\\Ann\\AppData\\Local\\Halcyonics\\Lumen Player");
  EXPECT_EQ(world_.system.FolderRequests().back(), Csidl::kLocalAppData | Csidl::kFlagCreate);

  world_.system.RemoveFolder(Csidl::kAppData);
  // Only one trailing separator is cut; the fake's code page is Latin-1.
  world_.registry.SetNarrowString(RegistryHive::CurrentUser, SystemPaths::kShellFoldersKey, u"AppData",
                                  "D:\\Caf\xE9//");
  EXPECT_EQ(Ask(&SystemPaths::GetPlayerDirectory, false), "D:\\Caf\xC3\xA9/\\Halcyonics\\Lumen Player");
}

TEST_F(SystemPathsTest, LocationsBeyond260CharactersAreNotFound) {
  world_.system.SetFolder(Csidl::kAppData, u"C:\\" + std::u16string(230, u'd'));
  EXPECT_NE(Ask(&SystemPaths::GetPlayerDataRoot, false), "(none)");
  EXPECT_EQ(Ask(&SystemPaths::GetProductDirectory), "(none)");
}

}  // namespace
