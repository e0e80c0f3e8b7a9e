#include "host/BrokerClientOptions.h"

#include <gtest/gtest.h>

using namespace SASM;
using Mode = BrokerClientOptions::Mode;

TEST(BrokerClientOptions, SwitchesComeFirstAndEverythingAfterTheMethodIsItsArguments) {
  BrokerClientOptions options;
  ASSERT_TRUE(
      options.Parse({u"-register", u"h.exe", u"-proxy", u"p.dll", u"-unregister", u"BrokerX", u"-1", u"-list"}));
  EXPECT_EQ(options.mode, Mode::Call);
  EXPECT_EQ(options.serverPath, u"h.exe");
  EXPECT_EQ(options.proxyPath, u"p.dll");
  EXPECT_TRUE(options.unregister);
  EXPECT_EQ(options.method, u"BrokerX");
  EXPECT_EQ(options.args, (std::vector<std::u16string>{u"-1", u"-list"}));
}

TEST(BrokerClientOptions, ModesAndRefusals) {
  const struct {
    std::vector<std::u16string> args;
    bool ok;
    Mode mode;
    const char* error;
  } kCases[] = {
      {{u"-list"}, true, Mode::List, ""},
      {{u"-unregister"}, true, Mode::RegistrationOnly, ""},
      {{u"-proxy", u"p.dll"}, false, Mode::Call, "no method named"},
      {{u"-register"}, false, Mode::Call, "missing argument after -register"},
      {{u"-list", u"BrokerX"}, false, Mode::List, "-list takes no method"},
      {{u"-proxy", u"p.dll", u"-download", u"http://a.halcyonics.example/p", u"LumenSample"}, true, Mode::Download, ""},
      {{u"-download", u"http://a.halcyonics.example/p"}, false, Mode::Call, "missing argument after -download"},
      {{u"-download", u"u", u"n", u"BrokerX"}, false, Mode::Call, "-download takes no method"},
  };
  for (const auto& c : kCases) {
    BrokerClientOptions options;
    EXPECT_EQ(options.Parse(c.args), c.ok) << c.error;
    EXPECT_EQ(options.error, c.error);
    if (c.ok) {
      EXPECT_EQ(options.mode, c.mode) << c.error;
    }
  }
}
