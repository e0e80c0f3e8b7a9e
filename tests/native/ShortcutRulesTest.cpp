// The text tests of the shortcut family and the unique names its files get.
#include <gtest/gtest.h>

#include <string>

#include "broker/ShortcutRules.h"
#include "tests/fakes/FakeShortcutPlatform.h"

using namespace SASM;

namespace {

// MakeUniquePath over `folder` in a buffer of `capacity`; "<null>" when it gives none.
std::u16string Unique(FakeShortcutPlatform& platform, const std::u16string& folder, size_t capacity,
                      bool overwrite = false) {
  std::u16string buffer(capacity + 1, u'#');  // one guard unit past the capacity
  std::copy(folder.begin(), folder.end(), buffer.begin());
  buffer[folder.size()] = u'\0';
  char16_t* path = ShortcutRules::MakeUniquePath(platform, buffer.data(), capacity, u"Game", u".url", overwrite);
  EXPECT_EQ(buffer[capacity], u'#') << "wrote past the capacity";
  return path ? std::u16string(path) : u"<null>";
}

}  // namespace

TEST(ShortcutRulesTest, UniquePathsNumberTakenNamesAndStayInsideTheirCapacity) {
  FakeShortcutPlatform platform;
  EXPECT_EQ(Unique(platform, u"C:\\D\\", 260), u"C:\\D\\Game.url");
  // "C:\D\Game.url" and its terminator need 14 units.
  EXPECT_EQ(Unique(platform, u"C:\\D", 14), u"C:\\D\\Game.url");
  EXPECT_EQ(Unique(platform, u"C:\\D", 13), u"<null>");
  platform.files = {u"C:\\D\\Game.url", u"C:\\D\\Game (2).url"};
  EXPECT_EQ(Unique(platform, u"C:\\D", 260), u"C:\\D\\Game (3).url");
  EXPECT_EQ(Unique(platform, u"C:\\D", 260, true), u"C:\\D\\Game.url");
  EXPECT_EQ(Unique(platform, u"C:\\D", 17), u"<null>");  // "C:\D\Game (3).url" needs 18
}

TEST(ShortcutRulesTest, NamesOfEachKindPassOnlyTheirOwnCharacters) {
  EXPECT_TRUE(ShortcutRules::IsDesktopShortcutName(u"My_Game_2\u00e9\u4e16"));
  for (const char16_t* name : {u"My Game", u"a.b", u"a-b", u"..\\a"})
    EXPECT_FALSE(ShortcutRules::IsDesktopShortcutName(name));

  EXPECT_TRUE(ShortcutRules::IsInternetShortcutName(u"My Game (\u00e9)!"));
  for (char16_t c : std::u16string(u"\"%&*./:<>?\\|\x1f"))
    EXPECT_FALSE(ShortcutRules::IsInternetShortcutName(std::u16string(u"a") + c)) << int(c);
}

TEST(ShortcutRulesTest, DesktopShortcutsLeadOnlyThroughTheRedirector) {
  const std::u16string path = u"/cn/lumenservice/shortcut/shortcutredirect/?url=";
  EXPECT_EQ(ShortcutRules::RedirectAddress(), u"https://redirect.halcyonics.example" + path);
  EXPECT_TRUE(ShortcutRules::IsRedirectAddress(ShortcutRules::RedirectAddress() + u"game"));
  for (std::u16string url :
       {u"http://redirect.halcyonics.example" + path, u"https://redirect.halcyonics.example.evil" + path,
        u"HTTPS://REDIRECT.halcyonics.example" + path})
    EXPECT_FALSE(ShortcutRules::IsRedirectAddress(url));
}

TEST(ShortcutRulesTest, IconPathsAreTheNamedCacheFileOrItsNumberedCopies) {
  const std::u16string roaming = u"C:\\Users\\a\\AppData\\Roaming";
  const std::u16string cache = roaming + u"\\Corva\\Lumen Player\\Icon Cache\\";
  auto ok = [&](const std::u16string& path) { return ShortcutRules::IsIconCachePath(path, roaming, u"Game"); };
  EXPECT_TRUE(ok(cache + u"Game (12).ico"));
  for (const char16_t* tail : {u"Game.ICO", u"Game.ico.lnk", u"Gamer.ico", u"Game (2)\\..\\x.ico"})
    EXPECT_FALSE(ok(cache + tail));
  EXPECT_FALSE(ok(roaming + u"\\Corva\\Lumen Player\\Game.ico"));
  // Below 260 characters in all.
  const std::u16string spaces(259 - (cache.size() + 8), u' ');
  EXPECT_TRUE(ok(cache + u"Game" + spaces + u".ico"));
  EXPECT_FALSE(ok(cache + u"Game" + spaces + u" .ico"));
}
