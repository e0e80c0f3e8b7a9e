#include "host/HostOptions.h"

#include <gtest/gtest.h>

using SASM::HostOptions;

TEST(HostOptions, KindSwitchesCombineIntoTheFlags) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-activex", u"-ppapi", u"-release"}));
  EXPECT_EQ(options.flags, 8u | 32768u | 1024u);
  EXPECT_EQ(options.mode, HostOptions::Mode::Lists);
}

TEST(HostOptions, NumbersAndPathsTakeTheirArgument) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-flags", u"0x8010", u"-source", u"2", u"-settings", u"C:\\s.txt", u"-module", u"m.dll"}));
  EXPECT_EQ(options.flags, 0x8010u);
  EXPECT_EQ(options.installSource, 2u);
  EXPECT_EQ(options.settingsPath, u"C:\\s.txt");
  EXPECT_EQ(options.modulePath, u"m.dll");
}

TEST(HostOptions, ComStartSelectsTheBroker) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-Embedding"}));
  EXPECT_EQ(options.mode, HostOptions::Mode::Broker);
}

TEST(HostOptions, BadInputIsOneLineOfError) {
  struct Case {
    std::vector<std::u16string> args;
    std::string error;
  };
  for (const Case& c : {Case{{u"-bogus"}, "unknown switch: -bogus"},
                        Case{{u"-settings"}, "missing argument after -settings"},
                        Case{{u"-flags", u"12x"}, "not a number after -flags: 12x"},
                        Case{{u"-source", u"99999999999"}, "not a number after -source: 99999999999"}}) {
    HostOptions options;
    EXPECT_FALSE(options.Parse(c.args));
    EXPECT_EQ(options.error, c.error);
  }
}
