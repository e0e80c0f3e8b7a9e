#include "host/BrokerCallArguments.h"

#include <gtest/gtest.h>

using namespace SASM;
using Type = BrokerCallArguments::Type;
using Parameter = BrokerCallArguments::Parameter;

namespace {

Parameter In(Type type, const char16_t* name = u"p") { return {name, type, true, false, false, u""}; }

// Binds one argument to one parameter of the type; the number it gave, or the error.
struct Bound {
  bool ok;
  int64_t number;
  std::string error;
};

Bound BindOne(Type type, const std::u16string& text) {
  std::vector<BrokerCallArguments::Value> values;
  std::string error;
  bool ok = BrokerCallArguments::Bind({In(type)}, {text}, values, error);
  return {ok, ok ? values[0].number : 0, error};
}

}  // namespace

TEST(BrokerCallArguments, NumbersAreDecimalInRangeOrHexOfTheTypesWidth) {
  const struct {
    Type type;
    std::u16string text;
    bool ok;
    int64_t number;
  } kCases[] = {
      {Type::Int32, u"-2147483648", true, INT32_MIN},
      {Type::Int32, u"2147483648", false, 0},
      {Type::Int32, u"0xFFFFFFFF", true, -1},  // hex is the bit pattern
      {Type::Int32, u"0x100000000", false, 0},
      {Type::UInt32, u"-1", false, 0},
      {Type::Int64, u"99999999999999999999", false, 0},
      {Type::UInt32, u"0x", false, 0},
      {Type::UInt32, u"12a", false, 0},
  };
  for (const auto& c : kCases) {
    Bound bound = BindOne(c.type, c.text);
    EXPECT_EQ(bound.ok, c.ok) << BrokerCallArguments::Ascii(c.text);
    EXPECT_EQ(bound.number, c.number) << BrokerCallArguments::Ascii(c.text);
  }
  EXPECT_EQ(BindOne(Type::UInt32, u"12a").error, "p: not a UI4 number: 12a");
}

TEST(BrokerCallArguments, BytesAreHexPairsNullOrAFile) {
  std::vector<BrokerCallArguments::Value> values;
  std::string error;
  ASSERT_TRUE(BrokerCallArguments::Bind({In(Type::Bytes), In(Type::Bytes), In(Type::Bytes), In(Type::Bytes)},
                                        {u"00fFa5", u"", u"null", u"@c:\\x.bin"}, values, error));
  EXPECT_EQ(values[0].bytes, (std::vector<uint8_t>{0x00, 0xFF, 0xA5}));
  EXPECT_TRUE(values[1].bytes.empty());
  EXPECT_FALSE(values[1].nullBytes);
  EXPECT_TRUE(values[2].nullBytes);
  EXPECT_EQ(values[3].bytesFile, u"c:\\x.bin");
  for (const char16_t* bad : {u"abc", u"0g", u"@", u"nul"}) EXPECT_FALSE(BindOne(Type::Bytes, bad).ok);
}

TEST(BrokerCallArguments, OutOnlyParametersTakeNoArgumentAndDefaultsMayBeLeftOff) {
  // As BrokerCreateIconPathV2: an in, an out, an optional in after it.
  const std::vector<Parameter> parameters = {In(Type::Bstr, u"p_fileName"),
                                             {u"p_iconPath", Type::Bstr, false, true, false, u""},
                                             {u"p_overwrite", Type::Int32, true, false, true, u"0"}};
  std::vector<BrokerCallArguments::Value> values;
  std::string error;
  ASSERT_TRUE(BrokerCallArguments::Bind(parameters, {u"a.ico"}, values, error));
  ASSERT_EQ(values.size(), 3u);
  EXPECT_EQ(values[0].text, u"a.ico");
  EXPECT_EQ(values[2].number, 0);
  ASSERT_TRUE(BrokerCallArguments::Bind(parameters, {u"a.ico", u"1"}, values, error));
  EXPECT_EQ(values[2].number, 1);
  EXPECT_FALSE(BrokerCallArguments::Bind(parameters, {}, values, error));
  EXPECT_EQ(error, "takes 1 to 2 arguments, not 0");
  EXPECT_FALSE(BrokerCallArguments::Bind(parameters, {u"a", u"1", u"2"}, values, error));
  EXPECT_FALSE(BrokerCallArguments::Bind({In(Type::Variant, u"v")}, {u"x"}, values, error));
  EXPECT_EQ(error, "v: a VARIANT argument can't be given on the command line");
  EXPECT_EQ(BrokerCallArguments::Describe(u"BrokerCreateIconPathV2", parameters),
            "BrokerCreateIconPathV2(p_fileName BSTR, out p_iconPath BSTR, [p_overwrite I4 = 0])");
}

TEST(BrokerCallArguments, TextComesOutAsUtf8OnOneLineAndReversibly) {
  EXPECT_EQ(BrokerCallArguments::Text(u"C:\\a b\\50%.txt"), "C:\\a b\\50%25.txt");
  EXPECT_EQ(BrokerCallArguments::Text(u"line\r\nnext\x7f"), "line%0d%0anext%7f");
  EXPECT_EQ(BrokerCallArguments::Text(u"\u00e9\u20ac\U0001F600"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(BrokerCallArguments::Text(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
  const uint8_t bytes[] = {0x00, 0x0A, 0xFF};
  EXPECT_EQ(BrokerCallArguments::Hex(bytes, 3), "000aff");
}
