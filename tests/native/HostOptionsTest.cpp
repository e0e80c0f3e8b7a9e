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
        Case{{u"-install", u"-silent", u"-player", u"p", u"-uninstaller", u"u"},
             "-install needs a kind: -activex, -npapi or -ppapi"},
        Case{{u"-install", u"-npapi", u"-player", u"p"}, "-install needs -player PATH and -uninstaller PATH"},
        Case{{u"-uninstall", u"-npapi"}, "-uninstall needs -directory DIR"}}) {
    HostOptions options;
    EXPECT_FALSE(options.Parse(c.args));
    EXPECT_EQ(options.error, c.error);
  }
}

TEST(HostOptions, WindowModesTakeTheirKindsFromTheSettingsAndSilentKeepsTheWindowlessRuns) {
  HostOptions install;
  ASSERT_TRUE(install.Parse({u"-install", u"-player", u"p", u"-uninstaller", u"u", u"-auto", u"-shots", u"D"}));
  EXPECT_TRUE(install.Windowed());
  EXPECT_FALSE(install.flagsGiven);
  EXPECT_TRUE(install.unattended);
  EXPECT_EQ(install.script, u"") << "a switch after -auto is not its script";
  EXPECT_EQ(install.EffectiveTimeoutMs(), HostOptions::kDefaultAutoTimeoutMs);
  HostOptions silent;
  ASSERT_TRUE(silent.Parse({u"-uninstall", u"-silent", u"-npapi", u"-directory", u"C:\\d"}));
  EXPECT_FALSE(silent.Windowed());
  HostOptions maintain;
  ASSERT_TRUE(maintain.Parse({u"-maintain", u"-directory", u"C:\\d", u"-auto", u"uninstall,done", u"-timeout", u"9"}));
  EXPECT_EQ(maintain.script, u"uninstall,done");
  EXPECT_EQ(maintain.EffectiveTimeoutMs(), 9u);
  HostOptions update;
  ASSERT_TRUE(update.Parse({u"-update", u"-source", u"12"}));
  EXPECT_TRUE(update.Windowed());
  EXPECT_TRUE(update.sourceGiven);
  EXPECT_EQ(update.EffectiveTimeoutMs(), 0u) << "a person's run has no bound";
}

TEST(HostOptions, WindowSwitchesOutsideAWindowModeAreRefused) {
  struct Case {
    std::vector<std::u16string> args;
    std::string error;
  };
  for (const Case& c :
       {Case{{u"-lists", u"-auto"}, "-auto, -timeout and -shots need a window: -install, -uninstall, -maintain or -update"},
        Case{{u"-install", u"-silent", u"-npapi", u"-player", u"p", u"-uninstaller", u"u", u"-shots", u"D"},
             "-auto, -timeout and -shots need a window: -install, -uninstall, -maintain or -update"},
        Case{{u"-update", u"-silent"}, "-silent goes with -install or -uninstall"},
        Case{{u"-maintain"}, "-maintain needs -directory DIR"},
        Case{{u"-update", u"-timeout", u"0"}, "-timeout needs a number above 0"},
        Case{{u"-uninstall", u"-silent", u"-directory", u"d"}, "-uninstall needs a kind: -activex, -npapi or -ppapi"}}) {
    HostOptions options;
    EXPECT_FALSE(options.Parse(c.args));
    EXPECT_EQ(options.error, c.error);
  }
}
