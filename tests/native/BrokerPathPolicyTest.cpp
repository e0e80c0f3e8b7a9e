#include <gtest/gtest.h>

#include "broker/BrokerPathPolicy.h"
#include "tests/native/BrokerTestWorld.h"

using namespace SASM;

namespace {

std::string Text(const MString& text) { return text.IsNull() ? "<null>" : text.ToUtf8(); }
std::string Text(const std::u16string& text) { return MString(text).ToUtf8(); }

// A user profile on drive C: with the player's folders in place, and a broker in server mode.
class BrokerPathPolicyTest : public ::testing::Test {
 protected:
  BrokerPathPolicyTest() { AddProfile(platform); }

  bool Writable(const std::u16string& path, bool requireExtension = true) {
    return policy.IsWritableDataPath(path.c_str(), requireExtension, nullptr);
  }

  FakePathPlatform platform;
  BrokerPathPolicy policy{platform, true};
};

}  // namespace

TEST_F(BrokerPathPolicyTest, CanonicalisesAndUpperCases) {
  EXPECT_EQ(Text(policy.SanitizePath(u"c:\\users\\a\\work\\..\\notes/x.sol", true)), "C:\\USERS\\A\\NOTES\\X.SOL");
  EXPECT_EQ(Text(policy.SanitizePath(u"c:\\users\\a\\work\\..\\notes/x.sol", false)), "c:\\users\\a\\notes\\x.sol");
  EXPECT_TRUE(policy.SanitizePath(nullptr, true).IsNull());
  // The long prefixes go, judged on the upper-case copy, in either mode.
  EXPECT_EQ(Text(policy.SanitizePath(u"\\\\?\\unc\\server\\share\\x", true)), "\\\\SERVER\\SHARE\\X");
  EXPECT_EQ(Text(policy.SanitizePath(u"\\\\?\\unc\\server\\share\\x", false)), "\\\\server\\share\\x");
  EXPECT_EQ(Text(policy.SanitizePath(u"\\\\?\\c:\\x", true)), "C:\\X");
}

TEST_F(BrokerPathPolicyTest, ForbiddenCharactersAndStrayColonsAreRefused) {
  // Only a drive letter may carry a colon: this keeps stream names out.
  for (const char16_t* path :
       {u"C:\\A\\B*.SOL", u"C:\\A\\B?.SOL", u"C:\\A\\B\".SOL", u"C:\\A\\B|.SOL", u"C:\\A\\B<.SOL", u"C:\\A\\B>.SOL",
        u"\\\\?\\C:\\A/B.SOL", u"\\\\?\\C:\\A?B", u"C:\\A\\X.SOL:EVIL.EXE", u"C:\\A\\X.SOL::$DATA",
        u"\\\\SERVER\\SHARE\\X.SOL:S", u"1:\\X.SOL"}) {
    EXPECT_TRUE(policy.SanitizePath(path, true).IsNull()) << Text(std::u16string(path));
    EXPECT_TRUE(policy.SanitizePath(path, false).IsNull()) << Text(std::u16string(path));
  }
}

TEST_F(BrokerPathPolicyTest, ComponentsMayNeitherBeginNorEndWithADotSoDevicesFailToo) {
  // Unlike the platform, the fake keeps a trailing dot on an inner folder and leaves long
  // paths alone, so these dots reach the rules as written; like it, the fake turns device
  // names into "\\.\" paths.
  for (const char16_t* path : {u"C:\\A\\B.\\X.SOL", u"C:\\A\\.CONFIG\\X.SOL", u"\\\\?\\C:\\A\\..\\X.SOL",
                               u"\\\\?\\C:\\A\\.\\X.SOL", u"C:\\A\\%2e\\X.SOL", u"C:\\A\\B%2E\\X.SOL",
                               u"C:\\A\\%2EB\\X.SOL", u"C:\\A\\CON", u"C:\\A\\nul.sol", u"\\\\.\\PhysicalDrive0"}) {
    EXPECT_TRUE(policy.SanitizePath(path, true).IsNull()) << Text(std::u16string(path));
  }
  EXPECT_EQ(Text(policy.SanitizePath(u"C:\\A\\B.C\\X.SOL", true)), "C:\\A\\B.C\\X.SOL");
  // Without upper-casing the dot rules don't run.
  EXPECT_EQ(Text(policy.SanitizePath(u"C:\\A\\.config\\x.sol", false)), "C:\\A\\.config\\x.sol");
}

TEST_F(BrokerPathPolicyTest, CanonicalisationRepeatsUntilItIsStable) {
  platform.SetFullPath(u"C:\\A", u"C:\\B");
  platform.SetFullPath(u"C:\\B", u"C:\\C");
  EXPECT_EQ(Text(policy.SanitizePath(u"C:\\A", true)), "C:\\C");

  // Forms that never settle: the hundredth one is taken.
  platform.SetFullPath(u"C:\\B", u"C:\\A");
  int before = platform.FullPathCalls();
  EXPECT_EQ(Text(policy.SanitizePath(u"C:\\A", true)), "C:\\A");
  EXPECT_EQ(platform.FullPathCalls() - before, 100);
}

TEST_F(BrokerPathPolicyTest, FullPathMustFitInTheBuffer) {
  EXPECT_EQ(policy.SanitizePath((u"C:\\" + std::u16string(1036, u'A')).c_str(), true).Length(), 1039);
  EXPECT_TRUE(policy.SanitizePath((u"C:\\" + std::u16string(1037, u'A')).c_str(), true).IsNull());
}

TEST_F(BrokerPathPolicyTest, UnboundUpperCaseRefusesEverything) {
  platform.SetUpperCaseBound(false);
  EXPECT_TRUE(policy.SanitizePath(u"C:\\X", false).IsNull());
  EXPECT_FALSE(Writable(kPlayerData + u"\\x.sol"));
}

TEST(BrokerPathPolicyRules, PathIsUnderRootOnlyAtASeparatorAndWithCase) {
  EXPECT_TRUE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\A\\B", u"C:\\A\\B"));
  EXPECT_TRUE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\A\\B\\X", u"C:\\A\\B"));
  EXPECT_TRUE(BrokerPathPolicy::IsPathUnderRoot(u"\\Z\\ROOT/FILE", u"\\Z\\ROOT"));
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\A\\BC", u"C:\\A\\B"));
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\A", u"C:\\A\\B"));
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(u"c:\\a\\b\\x", u"C:\\A\\B"));
  // A root with a separator of its own needs another one behind it.
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\X", u"C:\\"));
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(nullptr, u"C:\\"));
  EXPECT_FALSE(BrokerPathPolicy::IsPathUnderRoot(u"C:\\", nullptr));
}

TEST(BrokerPathPolicyRules, AllowListHoldsTheTwentyFiveExtensions) {
  const std::u16string expected[] = {u".TXT", u".SOR",  u".SOL", u".SSR", u".SSL", u".SXX", u".XML",
                                     u".AHD", u".DAT",  u".TWZ", u".HEU", u".TMP", u".S",   u".DIRECTORY",
                                     u".PNG", u".SSS",  u".GS",  u".MGD", u".LKG", u".LIC", u".VCH",
                                     u".DLL", u".META", u".ICO", u".JSON"};
  ASSERT_EQ(BrokerPathPolicy::kAllowedExtensions.size(), std::size(expected));
  for (const std::u16string& extension : expected)
    EXPECT_TRUE(BrokerPathPolicy::HasAllowedExtension((u"C:\\D\\F" + extension).c_str()));
  for (const char16_t* path : {u"C:\\D\\F.EXE", u"C:\\D\\F.SOL.EXE", u"C:\\D\\F.sol", u"C:\\D\\F.SOLX", u"C:\\D\\F"}) {
    EXPECT_FALSE(BrokerPathPolicy::HasAllowedExtension(path)) << Text(std::u16string(path));
  }
}

TEST(BrokerPathPolicyRules, UncServerRootIsABareServerName) {
  for (const char16_t* path : {u"\\\\SERVER", u"\\\\SERVER\\", u"//SERVER/", u"\\\\S"}) {
    EXPECT_TRUE(BrokerPathPolicy::IsUncServerRoot(path)) << Text(std::u16string(path));
  }
  for (const char16_t* path : {u"\\\\SERVER\\SHARE", u"\\\\SERVER\\\\", u"\\\\", u"\\\\\\X", u"\\SERVER", u"C:\\"}) {
    EXPECT_FALSE(BrokerPathPolicy::IsUncServerRoot(path)) << Text(std::u16string(path));
  }
}

TEST_F(BrokerPathPolicyTest, PlayerAndVendorDataNeedAListedExtensionWhenAsked) {
  EXPECT_TRUE(Writable(kPlayerData + u"\\x.sol"));
  EXPECT_TRUE(Writable(kVendor + u"\\x.ico"));
  EXPECT_FALSE(Writable(kPlayerDataUpper + u"\\X.EXE"));
  EXPECT_TRUE(Writable(kPlayerDataUpper + u"\\X.EXE", false));
  EXPECT_FALSE(Writable(kVendor + u"\\x.exe"));
  EXPECT_TRUE(Writable(kPlayerData, false));
  // The interface asks for the extension only when the caller passes exactly 1.
  std::u16string exe = kPlayerData + u"\\x.exe";
  EXPECT_EQ(policy.BrokerIsWritablePath(exe.c_str(), 1), static_cast<int32_t>(0x80004005));
  EXPECT_EQ(policy.BrokerIsWritablePath(exe.c_str(), 2), 0);
  EXPECT_EQ(policy.BrokerIsWritablePath(nullptr, 0), static_cast<int32_t>(0x80004005));
}

TEST_F(BrokerPathPolicyTest, SettingsDirectoryIsRefusedWhateverTheExtension) {
  EXPECT_FALSE(Writable(kSettings + u"\\x.sol"));
  EXPECT_FALSE(Writable(kSettings + u"\\x.sol", false));
  EXPECT_FALSE(Writable(kSettings, false));
  platform.AddDirectory(kSettings + u"2");
  EXPECT_TRUE(Writable(kSettings + u"2\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, EscapesForeignFoldersStreamsMissingParentsTrailingDotsAndDotFoldersAreRefused) {
  EXPECT_FALSE(Writable(u"\\\\?\\" + kPlayerDataUpper + u"\\X.SOL."));
  for (const std::u16string& path :
       {kRoaming + u"\\Halcyonics\\Lumen Player.\\x.sol", kPlayerData + u"\\.hidden\\x.sol",
        kPlayerData + u"\\..\\..\\x.sol", kPlayerData + u"2\\x.sol", kRoaming + u"\\x.sol",
        std::u16string(u"C:\\Windows\\x.sol"), std::u16string(u"x.sol"), kPlayerData + u"\\x.sol:evil.exe",
        kPlayerData + u"\\x.sol::$DATA", kPlayerData + u"\\NoSuchFolder\\x.sol",
        std::u16string(u"\\\\?\\UNC\\server\\share\\x.sol")}) {
    EXPECT_FALSE(Writable(path, false)) << Text(path);
  }
}

TEST_F(BrokerPathPolicyTest, TempRootIsTheLowFolderInServerModeAndTakesAnyExtension) {
  EXPECT_TRUE(Writable(kTemp + u"\\Low\\x.exe"));
  EXPECT_FALSE(Writable(kTemp + u"\\x.exe"));

  BrokerPathPolicy userPolicy(platform, false);
  EXPECT_TRUE(userPolicy.IsWritableDataPath((kTemp + u"\\x.exe").c_str(), true, nullptr));

  // A temp root inside the player's data still needs the extension.
  platform.SetTempPath(kPlayerData + u"\\Temp\\");
  platform.AddDirectory(kPlayerData + u"\\Temp");
  BrokerPathPolicy nestedPolicy(platform, false);
  EXPECT_FALSE(nestedPolicy.IsWritableDataPath((kPlayerData + u"\\Temp\\x.exe").c_str(), true, nullptr));
  EXPECT_TRUE(nestedPolicy.IsWritableDataPath((kPlayerData + u"\\Temp\\x.tmp").c_str(), true, nullptr));
}

TEST_F(BrokerPathPolicyTest, LocalAppDataTokenIsWritableOnlyWithLocalPlayerData) {
  const char16_t* path = u"<LOCAL_APPDATA>\\Halcyonics\\Lumen Player\\x.sol";
  EXPECT_EQ(Text(policy.ExpandBrokerPath(path)), Text(kLocal + u"\\Halcyonics\\Lumen Player\\x.sol"));
  EXPECT_NE(policy.BrokerIsWritablePath(path, 1), 0);

  BrokerPathPolicy localPolicy(platform, true);
  localPolicy.SetEnableLocalAppData(true);
  EXPECT_EQ(localPolicy.BrokerIsWritablePath(path, 1), 0);
  EXPECT_NE(localPolicy.BrokerIsWritablePath((kPlayerData + u"\\x.sol").c_str(), 1), 0);

  // The token matches with case, and an expansion must fit 260 units.
  EXPECT_EQ(Text(policy.ExpandBrokerPath(u"<local_appdata>\\x")), "<local_appdata>\\x");
  std::u16string longPath = u"<LOCAL_APPDATA>\\" + std::u16string(240, u'A');
  EXPECT_EQ(policy.ExpandBrokerPath(longPath.c_str()).View(), longPath);
}

TEST_F(BrokerPathPolicyTest, UncLongFormIsJudgedAsItsUncPath) {
  FakePathPlatform share;
  share.SetFolder(26, u"\\\\server\\profiles\\a\\Roaming");
  share.SetTempPath(kTemp + u"\\");
  share.AddDirectory(u"\\\\server\\profiles\\a\\Roaming\\Halcyonics\\Lumen Player");
  BrokerPathPolicy sharePolicy(share, false);
  EXPECT_TRUE(sharePolicy.IsWritableDataPath(
      u"\\\\?\\UNC\\server\\profiles\\a\\Roaming\\Halcyonics\\Lumen Player\\x.sol", true, nullptr));
  EXPECT_FALSE(sharePolicy.IsWritableDataPath(u"\\\\?\\UNC\\server\\other\\x.sol", false, nullptr));
}

TEST_F(BrokerPathPolicyTest, RootsComeFromTheRegistryWhenTheShellFailsAndAreKeptForTheLifeOfThePolicy) {
  FakePathPlatform bare;
  bare.SetTempPath(kTemp + u"\\");
  bare.AddDirectory(kPlayerData);
  BrokerPathPolicy barePolicy(bare, false);
  EXPECT_FALSE(barePolicy.IsWritableDataPath((kPlayerData + u"\\x.sol").c_str(), true, nullptr));

  bare.SetUserString(u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", u"AppData",
                     kRoaming + u"/");
  EXPECT_TRUE(barePolicy.IsWritableDataPath((kPlayerData + u"\\x.sol").c_str(), true, nullptr));

  EXPECT_TRUE(Writable(kPlayerData + u"\\x.sol"));
  platform.SetFolder(26, u"D:\\Profile");
  platform.AddDirectory(u"D:\\Profile\\Halcyonics\\Lumen Player");
  EXPECT_TRUE(Writable(kPlayerData + u"\\x.sol"));
  EXPECT_FALSE(Writable(u"D:\\Profile\\Halcyonics\\Lumen Player\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, SharedFlagFollowsThePathAndSharedObjectsIncludeHashFoldersOfTheSupportArea) {
  EXPECT_FALSE(policy.IsSharedObjectsPath((kPlayerDataUpper + u"\\#SHAREDOBJECTS\\X").c_str()));  // no root yet
  bool shared = false;
  EXPECT_TRUE(policy.IsWritableDataPath((kPlayerData + u"\\#SharedObjects\\abc\\x.sol").c_str(), true, &shared));
  EXPECT_TRUE(shared);
  EXPECT_FALSE(policy.IsWritableDataPath((kPlayerData + u"\\#SharedObjects\\x.exe").c_str(), true, &shared));
  EXPECT_TRUE(shared);
  EXPECT_TRUE(policy.IsWritableDataPath((kPlayerData + u"\\x.sol").c_str(), true, &shared));
  EXPECT_FALSE(shared);

  const std::u16string sys = kPlayerDataUpper + u"\\WWW.HALCYONICS.EXAMPLE\\SUPPORT\\LUMENPLAYER\\SYS";
  EXPECT_TRUE(policy.IsSharedObjectsPath((kPlayerDataUpper + u"\\#SHAREDOBJECTS\\X").c_str()));
  EXPECT_TRUE(policy.IsSharedObjectsPath((sys + u"\\#AB\\X.SOL").c_str()));
  EXPECT_TRUE(policy.IsSharedObjectsPath((sys + u"\\#AB\\C\\X.SOL").c_str()));
  EXPECT_FALSE(policy.IsSharedObjectsPath((sys + u"\\#\\X.SOL").c_str()));
  EXPECT_FALSE(policy.IsSharedObjectsPath((sys + u"\\#AB").c_str()));
  EXPECT_FALSE(policy.IsSharedObjectsPath((sys + u"\\AB\\#C\\X").c_str()));
  EXPECT_FALSE(policy.IsSharedObjectsPath((kPlayerDataUpper + u"\\#SHAREDOBJECTSX\\X").c_str()));
}

TEST_F(BrokerPathPolicyTest, LinkOutOfARootIsJudgedByItsTarget) {
  platform.AddSymbolicLink(kPlayerData + u"\\Escape", u"C:\\Windows\\System32");
  MString target;
  EXPECT_TRUE(policy.ResolveAllLinks((kPlayerDataUpper + u"\\ESCAPE\\X.SOL").c_str(), target));
  EXPECT_EQ(Text(target), "C:\\Windows\\System32\\X.SOL");
  EXPECT_FALSE(Writable(kPlayerData + u"\\Escape\\x.sol"));
  EXPECT_EQ(platform.OpenHandles(), 0u);

  // Only the folders on the path are walked, not the file itself.
  platform.AddReparsePoint(kPlayerData + u"\\x.sol",
                           FakePathPlatform::ReparseData(FakePathPlatform::kTagSymbolicLink, u"\\??\\C:\\X", u""));
  EXPECT_TRUE(Writable(kPlayerData + u"\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, ChainsAndMountPointsAreFollowedAndALinkTargetIsNotSanitisedAgain) {
  platform.AddSymbolicLink(kVendor + u"\\One", kPlayerDataUpper + u"\\TWO");
  platform.AddReparsePoint(
      kPlayerData + u"\\Two",
      FakePathPlatform::ReparseData(FakePathPlatform::kTagMountPoint,
                                    u"\\??\\" + kPlayerDataUpper + u"\\WWW.HALCYONICS.EXAMPLE", u""));
  EXPECT_FALSE(Writable(kVendor + u"\\One\\x.sol"));
  EXPECT_TRUE(Writable(kVendor + u"\\x.sol"));

  platform.AddSymbolicLink(kPlayerData + u"\\Upper", kVendorUpper);
  platform.AddSymbolicLink(kPlayerData + u"\\Mixed", kVendor);
  EXPECT_TRUE(Writable(kPlayerData + u"\\Upper\\x.sol"));
  EXPECT_FALSE(Writable(kPlayerData + u"\\Mixed\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, CycleCountsAsNoLink) {
  platform.AddSymbolicLink(kPlayerData + u"\\A", kPlayerDataUpper + u"\\B");
  platform.AddSymbolicLink(kPlayerData + u"\\B", kPlayerDataUpper + u"\\A");
  MString target(u"stale");
  EXPECT_TRUE(policy.ResolveAllLinks((kPlayerDataUpper + u"\\A\\X.SOL").c_str(), target));
  EXPECT_TRUE(target.IsNull());
  EXPECT_TRUE(Writable(kPlayerData + u"\\A\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, ChainLongerThanTheHistoryCountsAsNoLink) {
  for (int i = 0; i < 40; ++i) {
    std::u16string next =
        i == 39 ? u"C:\\WINDOWS\\SYSTEM32" : kPlayerDataUpper + u"\\L" + MString::FromNumber(i + 1).ToU16();
    platform.AddSymbolicLink(kPlayerData + u"\\L" + MString::FromNumber(i).ToU16(), next);
  }
  EXPECT_TRUE(Writable(kPlayerData + u"\\L0\\x.sol"));
  EXPECT_FALSE(Writable(kPlayerData + u"\\L37\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, ReparsePointWithoutAUsableNameIsNoLinkButAnUnopenableOneRefuses) {
  platform.AddReparsePoint(kPlayerData + u"\\Dedup", FakePathPlatform::ReparseData(0x80000013, u"\\??\\D:\\X", u""));
  std::vector<uint8_t> truncated =
      FakePathPlatform::ReparseData(FakePathPlatform::kTagSymbolicLink, u"\\??\\D:\\Outside", u"");
  truncated[8] = 0xF0;  // substitute name offset beyond the data
  platform.AddReparsePoint(kPlayerData + u"\\Broken", truncated);
  MString target;
  EXPECT_TRUE(policy.ResolveOneLink((kPlayerDataUpper + u"\\DEDUP\\X.SOL").c_str(), target));
  EXPECT_TRUE(target.IsNull());
  EXPECT_TRUE(policy.ResolveOneLink((kPlayerDataUpper + u"\\BROKEN\\X.SOL").c_str(), target));
  EXPECT_TRUE(target.IsNull());
  // One that can't be opened can't be judged at all.
  platform.FailOpen(kPlayerData + u"\\Broken");
  EXPECT_FALSE(Writable(kPlayerData + u"\\Broken\\x.sol"));
  EXPECT_EQ(platform.OpenHandles(), 0u);
}

TEST_F(BrokerPathPolicyTest, ObjectManagerLinksAreReadAndABareServerNameEndsTheWalkButAMissingShareRefuses) {
  platform.AddLinkObject(u"\\Device\\Lumen", u"\\??\\C:\\Outside");
  MString target;
  EXPECT_TRUE(policy.ResolveOneLink(u"\\\\?\\globalroot\\DEVICE\\LUMEN", target));
  EXPECT_EQ(Text(target), "C:\\Outside");
  EXPECT_EQ(platform.OpenHandles(), 0u);

  EXPECT_FALSE(policy.ResolveOneLink(u"\\\\SERVER\\SHARE\\X.SOL", target));
  platform.AddDirectory(u"\\\\SERVER\\SHARE");
  EXPECT_TRUE(policy.ResolveOneLink(u"\\\\SERVER\\SHARE\\X.SOL", target));
  EXPECT_TRUE(target.IsNull());
}

TEST_F(BrokerPathPolicyTest, ShortNameCannotSlipIntoTheSettingsDirectoryAndTheLongFormKeepsTheDisksCase) {
  platform.AddShortName(kPlayerDataUpper + u"\\WWWHAL~1", kPlayerDataUpper + u"\\WWW.HALCYONICS.EXAMPLE");
  platform.AddShortName(u"C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYO~1", u"C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYONICS");
  EXPECT_FALSE(Writable(kPlayerData + u"\\WWWHAL~1\\x.sol"));
  EXPECT_TRUE(Writable(kRoaming + u"\\HALCYO~1\\Lumen Player\\x.sol"));

  // The long form keeps the case on disk and isn't upper-cased again: a root name in mixed
  // case no longer matches, and neither does a settings directory stored in lower case.
  platform.AddShortName(u"C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYO~1", u"C:\\USERS\\A\\APPDATA\\ROAMING\\Halcyonics");
  EXPECT_FALSE(Writable(kRoaming + u"\\HALCYO~1\\Lumen Player\\x.sol"));
  // A settings directory stored in lower case is still the settings directory.
  platform.AddShortName(kPlayerDataUpper + u"\\WWWHAL~1", kPlayerDataUpper + u"\\www.halcyonics.example");
  EXPECT_FALSE(Writable(kPlayerData + u"\\WWWHAL~1\\x.sol"));
}

TEST_F(BrokerPathPolicyTest, NoAliasReachesTheSettingsDirectoryAtAnyDepthOrLength) {
  platform.AddDirectory(kSettings + u"\\Deep");
  platform.AddShortName(kPlayerDataUpper + u"\\WWWHAL~1", kSettings);
  platform.AddShortName(u"C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYO~1", kRoaming + u"\\Halcyonics");
  platform.AddShortName(kSettings + u"\\DEEPFO~1", kSettings + u"\\Deep");
  // Long enough that the joined long form passes 260 units and the alias would stay.
  const std::u16string longName = std::u16string(240 - kPlayerData.size(), u'F') + u".sol";
  for (const std::u16string& path : {kPlayerData + u"\\WWWHAL~1\\" + longName,
                                     kPlayerData + u"\\WWWHAL~1",               // the last component
                                     kPlayerData + u"\\WWWHAL~1\\DEEPFO~1\\x.sol",  // two aliases
                                     kSettings + u"\\DEEPFO~1\\" + longName,
                                     kRoaming + u"\\HALCYO~1\\Lumen Player\\WWWHAL~1\\x.sol"}) {
    EXPECT_FALSE(Writable(path, false)) << Text(path);
    EXPECT_TRUE(policy.IsSettingsAliasPath(path.c_str())) << Text(path);
  }
  EXPECT_FALSE(policy.IsSearchablePath((kPlayerData + u"\\WWWHAL~1\\*").c_str()));
  EXPECT_FALSE(policy.IsCreatableDirectory((kPlayerData + u"\\WWWHAL~1\\New").c_str()));
  EXPECT_TRUE(policy.IsCreatableDirectory((kPlayerData + u"\\New").c_str()));

  // A tilde that names nothing on disk is an ordinary name, and aliases elsewhere stay usable.
  platform.AddShortName(kPlayerDataUpper + u"\\ASSETS~1", kPlayerData + u"\\#SharedObjects");
  EXPECT_TRUE(Writable(kPlayerData + u"\\save~1.sol"));
  EXPECT_TRUE(Writable(kPlayerData + u"\\ASSETS~1\\" + longName));
  EXPECT_FALSE(policy.IsSettingsAliasPath((kPlayerData + u"\\NEWDIR~1\\x.sol").c_str()));
}

TEST_F(BrokerPathPolicyTest, AnAliasThatCannotBeExpandedIsRefused) {
  platform.AddShortName(kPlayerDataUpper + u"\\WWWHAL~1", kSettings);
  // A path that can't even be put in canonical form says nothing about where it leads.
  EXPECT_TRUE(policy.IsSettingsAliasPath((kPlayerData + u"\\WWWHAL~1\\B*.SOL").c_str()));
  EXPECT_FALSE(policy.IsSettingsAliasPath((kPlayerData + u"\\B*.SOL").c_str()));
}

TEST_F(BrokerPathPolicyTest, LongPathIsNullWithoutAChangeOfLength) {
  platform.AddDirectory(kPlayerDataUpper + u"\\ABC DEFG");
  platform.AddShortName(kPlayerDataUpper + u"\\ABCDEF~1", kPlayerDataUpper + u"\\ABC DEFG");
  platform.AddShortName(kPlayerDataUpper + u"\\HASHSH~1", kPlayerDataUpper + u"\\#SHAREDOBJECTS");
  EXPECT_TRUE(policy.TryGetLongPath((kPlayerDataUpper + u"\\X.SOL").c_str()).IsNull());
  EXPECT_TRUE(policy.TryGetLongPath((kPlayerDataUpper + u"\\ABCDEF~1\\X.SOL").c_str()).IsNull());
  EXPECT_EQ(Text(policy.TryGetLongPath((kPlayerDataUpper + u"\\HASHSH~1\\X.SOL").c_str())),
            Text(kPlayerDataUpper + u"\\#SHAREDOBJECTS\\X.SOL"));
  // The joined result must fit 260 units.
  EXPECT_TRUE(policy.TryGetLongPath((kPlayerDataUpper + u"\\HASHSH~1\\" + std::u16string(200, u'F')).c_str()).IsNull());
}

TEST_F(BrokerPathPolicyTest, CreatableDirectoriesAreTheVendorFoldersOfTheProfile) {
  EXPECT_TRUE(policy.IsCreatableDirectory((kRoaming + u"\\Halcyonics\\New").c_str()));
  EXPECT_TRUE(policy.IsCreatableDirectory((kRoaming + u"\\Corva").c_str()));
  EXPECT_FALSE(policy.IsCreatableDirectory((kRoaming + u"\\HalcyonicsX").c_str()));
  EXPECT_FALSE(policy.IsCreatableDirectory((kRoaming + u"\\Other").c_str()));
  EXPECT_FALSE(policy.IsCreatableDirectory((kRoaming + u"\\Corva.\\x").c_str()));
  EXPECT_FALSE(policy.IsCreatableDirectory((kLocal + u"\\Halcyonics\\New").c_str()));
  // Links are not resolved here.
  platform.AddSymbolicLink(kRoaming + u"\\Halcyonics\\Out", u"C:\\Windows");
  EXPECT_TRUE(policy.IsCreatableDirectory((kRoaming + u"\\Halcyonics\\Out\\New").c_str()));

  BrokerPathPolicy localPolicy(platform, true);
  localPolicy.SetEnableLocalAppData(true);
  EXPECT_TRUE(localPolicy.IsCreatableDirectory((kLocal + u"\\Halcyonics\\New").c_str()));
  EXPECT_TRUE(localPolicy.IsCreatableDirectory((kRoaming + u"\\Corva\\New").c_str()));
}

TEST_F(BrokerPathPolicyTest, SearchesAreJudgedByTheFolderBeforeThePattern) {
  platform.AddFile(kVendor + u"\\x.sol");
  for (const std::u16string& path :
       {kRoaming + u"\\Corva\\*.sol", kRoaming + u"\\Other\\*", kVendor + u"\\x.sol", kTemp + u"\\Low\\*",
        std::u16string(u"C:\\Windows\\system32\\Halcyons\\Lumen\\*.dll"),
        std::u16string(u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\*")}) {
    EXPECT_TRUE(policy.IsSearchablePath(path.c_str())) << Text(path);
  }
  for (const std::u16string& path :
       {kLocal + u"\\Halcyonics\\*", std::u16string(u"C:\\Windows\\*.*"), kTemp + u"\\*",
        std::u16string(u"C:\\Users\\a\\AppData\\Roam*\\x"), u"\\\\?\\" + kRoaming + u"\\Corva\\*"}) {
    EXPECT_FALSE(policy.IsSearchablePath(path.c_str())) << Text(path);
  }
  EXPECT_FALSE(policy.IsSearchablePath(nullptr));
}
