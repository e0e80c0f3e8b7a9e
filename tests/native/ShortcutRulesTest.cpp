// The text tests of the shortcut family and the unique names its files get.
#include <gtest/gtest.h>

#include <string>

#include "broker/ShortcutRules.h"
#include "engine/MString.h"
#include "tests/fakes/FakeShortcutPlatform.h"

using namespace SASM;

namespace {

const std::u16string kRoaming = u"C:\\Users\\a\\AppData\\Roaming";
const std::u16string kCache = kRoaming + u"\\Corva\\Lumen Player\\Icon Cache\\";

// MakeUniquePath over `folder` in a buffer of `capacity`; "<null>" when it gives none.
std::u16string Unique(FakeShortcutPlatform& platform, const std::u16string& folder, size_t capacity,
                      const char16_t* name, const char16_t* extension, bool overwrite = false) {
  std::u16string buffer(capacity + 1, u'#');  // one guard unit past the capacity
  std::copy(folder.begin(), folder.end(), buffer.begin());
  buffer[folder.size()] = u'\0';
  char16_t* path = ShortcutRules::MakeUniquePath(platform, buffer.data(), capacity, name, extension, overwrite);
  EXPECT_EQ(buffer[capacity], u'#') << "wrote past the capacity";
  return path ? std::u16string(path) : u"<null>";
}

}  // namespace

TEST(ShortcutRulesTest, UniquePathAddsOneSeparatorAndNumbersTakenNamesBeforeTheExtension) {
  FakeShortcutPlatform platform;
  EXPECT_EQ(Unique(platform, u"C:\\D", 260, u"Game", u".url"), u"C:\\D\\Game.url");
  EXPECT_EQ(Unique(platform, u"C:\\D\\", 260, u"Game", u".url"), u"C:\\D\\Game.url");
  platform.files = {u"C:\\D\\Game.url", u"C:\\D\\Game (2).url"};
  EXPECT_EQ(Unique(platform, u"C:\\D", 260, u"Game", u".url"), u"C:\\D\\Game (3).url");
  EXPECT_EQ(Unique(platform, u"C:\\D", 260, u"Game", u".url", true), u"C:\\D\\Game.url");
}

TEST(ShortcutRulesTest, UniquePathStaysInsideItsCapacityAtEveryStep) {
  FakeShortcutPlatform platform;
  // "C:\D\Game.url" is 13 units: 14 with the terminator.
  EXPECT_EQ(Unique(platform, u"C:\\D", 14, u"Game", u".url"), u"C:\\D\\Game.url");
  EXPECT_EQ(Unique(platform, u"C:\\D", 13, u"Game", u".url"), u"<null>");
  platform.files = {u"C:\\D\\Game.url"};
  EXPECT_EQ(Unique(platform, u"C:\\D", 17, u"Game", u".url"), u"<null>");
  EXPECT_EQ(Unique(platform, u"C:\\D", 18, u"Game", u".url"), u"C:\\D\\Game (2).url");
  // A folder that fills the buffer, terminator and all, has no room left.
  EXPECT_EQ(Unique(platform, std::u16string(13, u'x'), 14, u"", u""), u"<null>");
}

TEST(ShortcutRulesTest, DesktopNamesTakeLettersDigitsUnderscoresAndAnythingAboveAscii) {
  EXPECT_TRUE(ShortcutRules::IsDesktopShortcutName(u"My_Game_2"));
  EXPECT_TRUE(ShortcutRules::IsDesktopShortcutName(u"Spi\u00e9l\u4e16"));
  for (const char16_t* name : {u"My Game", u"a.b", u"a-b", u"..\\a", u"a\tb"})
    EXPECT_FALSE(ShortcutRules::IsDesktopShortcutName(name)) << MString(name).ToUtf8();
}

TEST(ShortcutRulesTest, DesktopShortcutsLeadOnlyThroughTheRedirector) {
  const std::u16string redirect = u"https://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=";
  EXPECT_EQ(ShortcutRules::RedirectAddress(), redirect);
  EXPECT_TRUE(ShortcutRules::IsRedirectAddress(redirect + u"game"));
  for (std::u16string url :
       {u"http://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=x",
        u"https://redirect.halcyonics.example.evil/cn/lumenservice/shortcut/shortcutredirect/?url=x",
        u"HTTPS://REDIRECT.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=x",
        u"https://redirect.halcyonics.example/cn/lumenservice/shortcut/"})
    EXPECT_FALSE(ShortcutRules::IsRedirectAddress(url)) << MString(url.c_str()).ToUtf8();
}

TEST(ShortcutRulesTest, InternetShortcutNamesAreShortAndFreeOfTheForbiddenTable) {
  EXPECT_TRUE(ShortcutRules::IsInternetShortcutName(std::u16string(29, u'a')));
  EXPECT_FALSE(ShortcutRules::IsInternetShortcutName(std::u16string(30, u'a')));
  EXPECT_TRUE(ShortcutRules::IsInternetShortcutName(u"My Game (\u00e9)!"));
  int forbidden = 0;
  for (char16_t c = 0; c < 0x100; ++c) forbidden += ShortcutRules::IsForbidden(c);
  EXPECT_EQ(forbidden, 32 + 12);
  for (char16_t c : std::u16string(u"\"%&*./:<>?\\|\x1f")) {
    EXPECT_FALSE(ShortcutRules::IsInternetShortcutName(std::u16string(u"a") + c)) << int(c);
  }
}

TEST(ShortcutRulesTest, CanonicalAddressesMustBeWebAddressesInEitherCase) {
  for (const char16_t* url : {u"http://a", u"HTTPS://a", u"hTtP:x"}) EXPECT_TRUE(ShortcutRules::IsWebUrl(url));
  for (const char16_t* url : {u"ftp://a", u"http//a", u"file:///C:/x", u" http://a", u"http"})
    EXPECT_FALSE(ShortcutRules::IsWebUrl(url));
}

TEST(ShortcutRulesTest, IconPathsAreTheNamedCacheFileOrItsNumberedCopies) {
  auto ok = [](const std::u16string& path, const std::u16string& name = u"Game") {
    return ShortcutRules::IsIconCachePath(path, kRoaming, name);
  };
  EXPECT_TRUE(ok(kCache + u"Game.ico"));
  EXPECT_TRUE(ok(kCache + u"Game (12).ico"));
  EXPECT_FALSE(ok(kCache + u"Game.ICO"));
  EXPECT_FALSE(ok(kCache + u"Game.ico.lnk"));
  EXPECT_FALSE(ok(kCache + u"Gamer.ico"));
  EXPECT_FALSE(ok(kCache + u"Game (2)\\..\\x.ico"));
  EXPECT_FALSE(ok(kRoaming + u"\\Corva\\Lumen Player\\Game.ico"));
  EXPECT_FALSE(ok(kCache + u"Game.ico", u"Other"));
  EXPECT_FALSE(ok(kCache + std::u16string(30, u'g') + u".ico", std::u16string(30, u'g')));
  // Below 260 characters in all.
  const std::u16string spaces(259 - (kCache.size() + 8), u' ');
  EXPECT_TRUE(ok(kCache + u"Game" + spaces + u".ico"));
  EXPECT_FALSE(ok(kCache + u"Game" + spaces + u" .ico"));
}

TEST(ShortcutRulesTest, MarkupIsFoundAnywhereInTheStringsArray) {
  std::string markup;
  ASSERT_TRUE(ShortcutRules::BuildMarkup("https://a.example/", "Game", markup));
  EXPECT_EQ(markup, "<shortcut href=\"https://a.example/\">Game</shortcut>");
  EXPECT_FALSE(ShortcutRules::BuildMarkup(std::string(230, 'u'), "Game", markup));

  using namespace std::string_literals;
  const std::string bytes = "x\0y<shortcut href=\"https://a.example/\">Game</shortcut>z"s;
  ShortcutByteArray array{true, {1, 1, 0, static_cast<uint32_t>(bytes.size())},
                          reinterpret_cast<const uint8_t*>(bytes.data())};
  EXPECT_TRUE(ShortcutRules::Contains(array, "<shortcut href=\"https://a.example/\">Game</shortcut>"));
  EXPECT_FALSE(ShortcutRules::Contains(array, "<shortcut href=\"https://a.example/\">Gam</shortcut>"));
  array.shape.count -= 2;
  EXPECT_FALSE(ShortcutRules::Contains(array, "<shortcut href=\"https://a.example/\">Game</shortcut>"));
}
