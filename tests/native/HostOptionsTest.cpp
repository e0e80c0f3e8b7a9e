#include <gtest/gtest.h>

#include "host/HostOptions.h"

using SASM::HostOptions;

TEST(HostOptions, KindSwitchesCombineIntoTheFlagsAndConflictsListsThem) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-activex", u"-ppapi", u"-release"}));
  EXPECT_EQ(options.flags, 8u | 32768u | 1024u);
  EXPECT_EQ(options.mode, HostOptions::Mode::Lists);
  HostOptions conflicts;
  ASSERT_TRUE(conflicts.Parse({u"-conflicts", u"-npapi", u"-activex"}));
  EXPECT_EQ(conflicts.mode, HostOptions::Mode::Conflicts);
  EXPECT_EQ(conflicts.flags, 16u | 8u);
}

TEST(HostOptions, NumbersAndPathsTakeTheirArgumentAndComStartSelectsTheBroker) {
  HostOptions options;
  ASSERT_TRUE(
      options.Parse({u"-flags", u"0x8010", u"-source", u"2", u"-settings", u"C:\\s.txt", u"-module", u"m.dll"}));
  EXPECT_EQ(options.flags, 0x8010u);
  EXPECT_EQ(options.settingsPath, u"C:\\s.txt");
  HostOptions broker;
  ASSERT_TRUE(broker.Parse({u"-Embedding"}));
  EXPECT_EQ(broker.mode, HostOptions::Mode::Broker);
}

TEST(HostOptions, InstallTakesTheKindsAndBothPaths) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-install", u"-activex", u"-ppapi", u"-player", u"C:\\LumenCtrl.ocx", u"-uninstaller",
                             u"C:\\LumenUtil_ActiveX.exe", u"-uninstall-entry"}));
  EXPECT_EQ(options.mode, HostOptions::Mode::Install);
  EXPECT_EQ(options.flags, 8u | 32768u);
  EXPECT_EQ(options.playerPath, u"C:\\LumenCtrl.ocx");
  EXPECT_EQ(options.uninstallerPath, u"C:\\LumenUtil_ActiveX.exe");
  EXPECT_TRUE(options.writeUninstallEntry);
}

TEST(HostOptions, UninstallTakesTheKindsAndTheSystemFilesDirectory) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-uninstall", u"-activex", u"-ppapi", u"-directory", u"C:\\Windows\\SysWOW64"}));
  EXPECT_EQ(options.mode, HostOptions::Mode::Uninstall);
  EXPECT_EQ(options.flags, 8u | 32768u);
  EXPECT_EQ(options.directory, u"C:\\Windows\\SysWOW64");
}

TEST(HostOptions, BadInputIsOneLineOfError) {
  struct Case {
    std::vector<std::u16string> args;
    std::string error;
  };
  for (const Case& c :
       {Case{{u"-bogus"}, "unknown switch: -bogus"}, Case{{u"-settings"}, "missing argument after -settings"},
        Case{{u"-source", u"99999999999"}, "not a number after -source: 99999999999"},
        Case{{u"-install", u"-player", u"p", u"-uninstaller", u"u"},
             "-install needs a kind: -activex, -npapi or -ppapi"},
        Case{{u"-install", u"-npapi", u"-player", u"p"}, "-install needs -player PATH and -uninstaller PATH"},
        Case{{u"-uninstall", u"-npapi"}, "-uninstall needs -directory DIR"}}) {
    HostOptions options;
    EXPECT_FALSE(options.Parse(c.args));
    EXPECT_EQ(options.error, c.error);
  }
}
