#include "delivery/AddOnNames.h"

#include <gtest/gtest.h>

#include <string>

namespace SASM {
namespace {

TEST(AddOnNames, ProductNameIsOneToThirtyOneLettersOrDigits) {
  const std::u16string longest(31, u'a');
  EXPECT_TRUE(AddOnNames::IsValidProductName(longest.c_str()));
  EXPECT_TRUE(AddOnNames::IsValidProductName(u"LumenSample2"));
  const std::u16string tooLong(32, u'a');
  for (const char16_t* name : {tooLong.c_str(), u"", u"lumen-sample", u"lumen.sample", u"a\\b", u"a/b", u"a b",
                               u"caf\u00e9", u"\uff21bc"})
    EXPECT_FALSE(AddOnNames::IsValidProductName(name)) << std::string(name, name + 1);
  EXPECT_FALSE(AddOnNames::IsValidProductName(nullptr));
}

struct Parsed {
  bool ok;
  std::string host;
  std::string path;
  bool secure;
};

Parsed Parse(const char* url) {
  Parsed parsed{false, "x", "x", true};
  parsed.ok = AddOnNames::ParseProductUrl(url, parsed.host, parsed.path, parsed.secure);
  return parsed;
}

TEST(AddOnNames, UrlNamesOneLabelUnderTheVendorDomain) {
  Parsed plain = Parse("http://download.halcyonics.example/addons/LumenSample.pkg");
  EXPECT_TRUE(plain.ok);
  EXPECT_EQ(plain.host, "download.halcyonics.example");
  EXPECT_EQ(plain.path, "/addons/LumenSample.pkg");
  EXPECT_FALSE(plain.secure);

  const std::string label32 = "https://" + std::string(32, 'a') + ".halcyonics.example/";
  Parsed secure = Parse(label32.c_str());
  EXPECT_TRUE(secure.ok);
  EXPECT_TRUE(secure.secure);
  EXPECT_EQ(secure.path, "/");
  EXPECT_TRUE(Parse("http://cdn-2.halcyonics.example/x").ok);
}

TEST(AddOnNames, UrlRefusalsClearTheOutputs) {
  const std::string label33 = "http://" + std::string(33, 'a') + ".halcyonics.example/x";
  for (const char* url : {label33.c_str(), "http://Download.halcyonics.example/x", "http://a.b.halcyonics.example/x",
                          "http://download.halcyonics.example:8080/x", "HTTP://download.halcyonics.example/x",
                          "ftp://download.halcyonics.example/x", "http://download.halcyonics.example",
                          "http://download.halcyonics.examples/x", "http://.halcyonics.example/x", "http://download",
                          "https:/", "http://download_x.halcyonics.example/"}) {
    Parsed parsed = Parse(url);
    EXPECT_FALSE(parsed.ok) << url;
    EXPECT_TRUE(parsed.host.empty() && parsed.path.empty() && !parsed.secure) << url;
  }
  EXPECT_FALSE(Parse(nullptr).ok);
}

}  // namespace
}  // namespace SASM
