#include <gtest/gtest.h>

#include "install/FileReplacer.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kSessionManager[] = u"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr char16_t kControl[] = u"C:\\Windows\\system32\\Halcyons\\Lumen\\LumenCtrl.ocx";

class FileReplacerTest : public WorldTest {
 protected:
  explicit FileReplacerTest(const char16_t* settings = u"") : WorldTest({}, settings) {}
  FileReplacer Replacer() { return FileReplacer(*world_.shim, world_.GetPlatform()); }
  // Held open for reading, as a running player holds its file: readable, not deletable.
  void Hold(std::u16string_view path) {
    FileHandleId handle = 0;
    ASSERT_EQ(world_.files.Open(path, 4, handle), 0);
  }
};

TEST_F(FileReplacerTest, ReadOnlyFileIsClearedAndDeletedOnTheSecondTry) {
  world_.files.AddFile(u"C:\\Lumen\\readme.txt", "x", FileAttribute::kReadOnly);
  EXPECT_EQ(Replacer().ReplaceFile(MString(u"C:\\Lumen\\readme.txt"), 0), 0);
  EXPECT_FALSE(world_.files.Exists(u"C:\\Lumen\\readme.txt"));
  EXPECT_EQ(world_.Reports(), (Strings{"1015 1 C:\\Lumen\\readme.txt 5"}));
  EXPECT_TRUE(world_.files.RebootDeletes().empty());
}

TEST_F(FileReplacerTest, LockedActiveXFileStopsPlayersRetriesAndIsQueuedForRestart) {
  world_.files.AddFile(kControl, "ocx");
  Hold(kControl);
  EXPECT_EQ(Replacer().ReplaceFile(MString(kControl), 8), 32);
  std::string line = "1015 1 " + MString(kControl).ToUtf8() + " 20";
  EXPECT_EQ(world_.Reports(), (Strings{line, "18 0 ", line}))
      << "the error stays after queueing: the caller sees a failure and the log has two lines";
  EXPECT_EQ(world_.files.RebootDeletes(), (Paths{kControl}));
  uint32_t allow = 0;
  EXPECT_EQ(world_.registry.ReadDword(RegistryHive::Machine, kSessionManager, u"AllowProtectedRenames", allow), 0);
  EXPECT_EQ(allow, 1u);
}

TEST_F(FileReplacerTest, DeniedFileThatCannotBeQueuedEitherReportsBoth) {
  world_.files.AddFile(u"C:\\Lumen\\p.dll", "x");
  world_.files.Deny(u"C:\\Lumen\\p.dll");
  world_.registry.FailValue(RegistryHive::Machine, kSessionManager, u"AllowProtectedRenames", 5);
  EXPECT_EQ(Replacer().ReplaceFile(MString(u"C:\\Lumen\\p.dll"), 16), 5);
  EXPECT_EQ(world_.Codes(), (CodeList{1015, 1035, 1045, 1015}));
}

TEST_F(FileReplacerTest, LockTestNeedsItsFlagAndAFileHeldFromWritingAndReportsAnEmptyOne) {
  const MString path(u"C:\\Windows\\system32\\LumenPlayerApp.exe");
  EXPECT_EQ(Replacer().TestFileLocked(0, path), FileReplacer::kNotLocked);
  EXPECT_EQ(world_.Reports(), (Strings{"20 0 C:\\Windows\\system32\\LumenPlayerApp.exe"}));
  world_.files.AddFile(path.View(), "content");
  EXPECT_EQ(Replacer().TestFileLocked(512, path), FileReplacer::kNotLocked) << "free";
  Hold(path.View());
  EXPECT_EQ(Replacer().TestFileLocked(512, path), FileReplacer::kLockedWithContent);
  EXPECT_EQ(world_.files.OpenHandles(), 1u) << "only the holder's handle is left";

  const MString empty(u"C:\\Windows\\system32\\LumenPlayerCPLApp.cpl");
  world_.files.AddFile(empty.View(), "");
  Hold(empty.View());
  EXPECT_EQ(Replacer().TestFileLocked(512 | 1, empty), FileReplacer::kLockedEmpty);
  EXPECT_EQ(world_.Codes().back(), 1046);
}

class SystemFileTest : public FileReplacerTest {
 protected:
  static constexpr char16_t kApplet[] = u"C:\\Windows\\system32\\LumenPlayerCPLApp.cpl";
  static constexpr char16_t kManager[] = u"C:\\Windows\\system32\\LumenPlayerApp.exe";
  static constexpr char16_t kCategory[] =
      u"Software\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Extended "
      u"Properties\\System.ControlPanel.Category";

  SystemFileTest() : FileReplacerTest(u"Host { ControlPanelApplet LumenPlayerCPLApp.cpl; }") {
    world_.files.AddFile(kApplet, "cpl");
    world_.files.AddFile(kManager, "exe");
    world_.registry.SetDword(RegistryHive::Machine, kCategory, u"C:\\Windows\\system32\\LumenPlayerCPLApp.cpl", 10);
  }
};

TEST_F(SystemFileTest, StaysWhileAnyKindIsInstalled) {
  world_.registry.SetString(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPepper", u"PlayerPath", u"p");
  world_.registry.SetString(RegistryHive::Machine, u"Software\\Halcyonics\\LumenPlayerPepper", u"UninstallerPath",
                            u"u");
  EXPECT_TRUE(Replacer().RemoveSystemFile(MString(kApplet)));
  EXPECT_TRUE(world_.files.Exists(kApplet));
}

TEST_F(SystemFileTest, AppletGoesWithItsControlPanelCategory) {
  EXPECT_TRUE(Replacer().RemoveSystemFile(MString(kApplet)));
  EXPECT_FALSE(world_.files.Exists(kApplet));
  uint32_t category = 0;
  EXPECT_EQ(world_.registry.ReadDword(RegistryHive::Machine, kCategory, u"C:\\Windows\\system32\\LumenPlayerCPLApp.cpl",
                                      category),
            2);
  EXPECT_EQ(world_.Codes(), (CodeList{1036, 1036, 1036})) << "one failed path read per kind";
}

TEST_F(SystemFileTest, ExecutableLosesItsExecutionOptionsEvenWhenItStays) {
  const char16_t kOptions[] =
      u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\LumenPlayerApp.exe";
  world_.registry.SetDword(RegistryHive::Machine, kOptions, u"DisableExceptionChainValidation", 0);
  FileHandleId handle = 0;
  ASSERT_EQ(world_.files.Open(kManager, 4, handle), 0);
  EXPECT_FALSE(Replacer().RemoveSystemFile(MString(kManager)));
  EXPECT_TRUE(world_.files.Exists(kManager));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine, kOptions));
}

TEST_F(SystemFileTest, OlderSystemsKeepTheCategoryUnderItsId) {
  world_.system.SetMajorVersion(5);
  EXPECT_FALSE(Replacer().RemoveSystemFile(MString(kApplet))) << "the category value is under the other key";
  EXPECT_FALSE(world_.files.Exists(kApplet));
  EXPECT_EQ(world_.Reports().back(),
            "1037 1 Software\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Extended "
            "Properties\\{2CA4F306-B280-4ab2-B5E1-1DFA3583F046}/C:\\Windows\\system32\\LumenPlayerCPLApp.cpl 2");
}

class UniqueNameTest : public FileReplacerTest {
 protected:
  char16_t* Make(int32_t capacity, const char16_t* directory, bool overwrite = false,
                 const char16_t* extension = u".lnk") {
    buffer_.assign(static_cast<size_t>(capacity), u'#');
    std::u16string_view text(directory);
    std::copy(text.begin(), text.end(), buffer_.begin());
    buffer_[text.size()] = 0;
    return Replacer().MakeUniqueFileName(buffer_.data(), capacity, u"Lumen Player", extension, overwrite);
  }
  std::u16string_view Text() const { return std::u16string_view(buffer_.data()); }
  std::u16string buffer_;
};

TEST_F(UniqueNameTest, TwoClashesGiveTheThirdNumber) {
  world_.files.AddFile(u"C:\\Desktop\\Lumen Player.lnk");
  world_.files.AddFile(u"C:\\Desktop\\Lumen Player (2).lnk");
  ASSERT_NE(Make(260, u"C:\\Desktop"), nullptr);
  EXPECT_EQ(Text(), u"C:\\Desktop\\Lumen Player (3).lnk");
  ASSERT_NE(Make(260, u"C:\\Desktop\\", true), nullptr);
  EXPECT_EQ(Text(), u"C:\\Desktop\\Lumen Player.lnk") << "overwrite takes the name as it is";
}

TEST_F(UniqueNameTest, NoRoomOrNoBufferGivesNullAndALongNameIsCutAtTheCapacity) {
  EXPECT_EQ(Make(22, u"C:\\Desktop"), nullptr) << "27 units and a terminator don't fit";
  EXPECT_NE(Make(28, u"C:\\Desktop"), nullptr);
  EXPECT_EQ(Replacer().MakeUniqueFileName(nullptr, 10, u"a", u".b", false), nullptr);
  char16_t buffer[8] = u"C:";
  EXPECT_EQ(Replacer().MakeUniqueFileName(buffer, 8, u"a", nullptr, false), nullptr);

  world_.files.AddFile(u"C:\\Desktop\\Lumen Player.lnk");
  ASSERT_NE(Make(30, u"C:\\Desktop"), nullptr);
  EXPECT_EQ(Text(), u"C:\\Desktop\\Lumen Player (2).l") << "the last unit of the capacity is forced to 0";
  world_.files.AddFile(u"C:\\Desktop\\Lumen Player");
  EXPECT_EQ(Make(24, u"C:\\Desktop", false, u""), nullptr) << "every round would name the same taken file";
}

}  // namespace
