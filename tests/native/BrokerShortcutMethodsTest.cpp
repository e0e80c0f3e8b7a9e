// The shortcut family as a client sees it: HRESULTs, and the files and pins
// each call leaves behind on the fake desktop, start menu and quick launch bar.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "broker/BrokerShortcutMethods.h"
#include "engine/MString.h"
#include "tests/fakes/FakeShortcutPlatform.h"
#include "tests/fakes/FakeSignedMessageCheck.h"

using namespace SASM;
using Strings = std::vector<std::string>;

namespace {

constexpr int32_t kRefused = static_cast<int32_t>(0x80010010);
constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
const std::u16string kRedirect =
    u"https://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=game";
const std::u16string kCache = u"C:\\Users\\a\\AppData\\Roaming\\Corva\\Lumen Player\\Icon Cache";
const std::string kQuickLaunch = "C:\\Users\\a\\AppData\\Roaming\\Microsoft\\Internet Explorer\\Quick Launch";

std::string Utf8(const std::u16string& text) { return MString(text.c_str()).ToUtf8(); }

// The family over the fakes, with an internet shortcut request that passes
// every test; each test spoils one part.
struct ShortcutWorld {
  FakeShortcutPlatform platform;
  ShortcutRateLimit rateLimit;
  FakeSignedMessageCheck signatures;
  BrokerShortcutMethods methods{platform, rateLimit, signatures};
  std::u16string name, url, icon;
  std::string strings, message = "signed-message";
  ByteArrayShape stringsShape{1, 1, 0, 0};
  uint32_t flags = 1;

  ShortcutWorld() { Sign(u"Game", u"https://www.halcyonics.example/play?id=7"); }
  // Names the shortcut alike everywhere: its icon, the strings and the signed mark-up.
  void Sign(const std::u16string& newName, const std::u16string& newUrl) {
    name = newName;
    url = newUrl;
    icon = kCache + u"\\" + name + u".ico";
    const std::string markup = "<shortcut href=\"" + Utf8(url) + "\">" + Utf8(name) + "</shortcut>";
    strings = "head" + markup + "tail";
    signatures.signedContents[message] = markup;
  }
  int32_t Internet() {
    stringsShape.count = static_cast<uint32_t>(strings.size());
    ShortcutByteArray stringArray{true, stringsShape, reinterpret_cast<const uint8_t*>(strings.data())};
    ShortcutByteArray signedArray{
        true, {1, 1, 0, static_cast<uint32_t>(message.size())}, reinterpret_cast<const uint8_t*>(message.data())};
    return methods.CreateInternetShortcut(name.c_str(), url.c_str(), icon.c_str(), signedArray, stringArray, flags);
  }
  // A desktop shortcut 3,001 ms after the last call.
  int32_t Desktop(const char16_t* shortcut, const std::u16string& address, const char16_t* iconPath, uint32_t places) {
    platform.tick += 3001;
    return methods.CreateDesktopShortcut(shortcut, address.c_str(), iconPath, places);
  }
};

class BrokerShortcutMethodsTest : public ::testing::Test, public ShortcutWorld {};

}  // namespace

TEST_F(BrokerShortcutMethodsTest, IconPathsAreMadeInTheCacheWhichIsCreatedFirst) {
  std::u16string path;
  EXPECT_EQ(methods.CreateIconPath(u"Game", false, path), 0);
  EXPECT_EQ(path, kCache + u"\\Game.ico");
  EXPECT_EQ(platform.log, Strings{"Directory " + Utf8(kCache)});
  platform.files.insert(path);
  EXPECT_EQ(methods.CreateIconPath(u"Game", false, path), 0);
  EXPECT_EQ(path, kCache + u"\\Game (2).ico");
  EXPECT_EQ(methods.CreateIconPath(std::u16string(300, u'g').c_str(), true, path), kFail);
}

TEST_F(BrokerShortcutMethodsTest, DesktopShortcutsComeAtMostEvery3001msAndARefusalRestartsTheWait) {
  platform.tick = 50000;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), 0);
  platform.tick += 3000;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), kRefused);
  platform.tick += 3000;  // 6,000 after the last success, 3,000 after the refusal
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), kRefused);
  platform.tick += 3001;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), 0);
}

TEST_F(BrokerShortcutMethodsTest, DesktopShortcutsAreSavedAtEachPlaceInOrderThenPinned) {
  EXPECT_EQ(Desktop(u"Game", kRedirect, icon.c_str(), 15), 0);
  EXPECT_EQ(platform.log,
            (Strings{"Create internet shortcut", "Url " + Utf8(kRedirect), "Icon " + Utf8(icon) + ",0",
                     "Save C:\\Users\\a\\Desktop\\Game.url 1", "Save C:\\Users\\a\\Start Menu\\Programs\\Game.lnk 1",
                     "Save " + kQuickLaunch + "\\Game.lnk 1", "Pin " + kQuickLaunch + "\\Game.lnk",
                     "Delete " + kQuickLaunch + "\\Game.lnk"}));
  // A taken name is numbered; bit 8 without bit 4 pins nothing.
  platform.log.clear();
  EXPECT_EQ(Desktop(u"Game", kRedirect, u"", 1 | 8), 0);
  EXPECT_EQ(platform.log.back(), "Save C:\\Users\\a\\Desktop\\Game (2).url 1");
  // A failed save ends the call with its result.
  platform.failingSteps["Save"] = static_cast<int32_t>(0x80070003);
  EXPECT_EQ(Desktop(u"Game", kRedirect, u"", 1 | 2), static_cast<int32_t>(0x80070003));
  EXPECT_EQ(platform.log.back(), "Save C:\\Users\\a\\Desktop\\Game (3).url 1");
}

TEST_F(BrokerShortcutMethodsTest, DesktopShortcutsOutsideTheRulesAreRefusedBeforeAnythingIsMade) {
  EXPECT_EQ(Desktop(nullptr, kRedirect, u"", 1), kRefused);
  EXPECT_EQ(Desktop(u"Game", kRedirect, u"", 0), kRefused);
  EXPECT_EQ(Desktop(u"My Game", kRedirect, u"", 1), kRefused);
  EXPECT_EQ(Desktop(u"Game", u"https://www.halcyonics.example/", u"", 1), kRefused);
  EXPECT_TRUE(platform.log.empty());
}

TEST_F(BrokerShortcutMethodsTest, AnEntitledShortcutOpensTheCanonicalAddressInTheDefaultBrowser) {
  url += u"#";
  platform.canonicalUrls[url] = u"https://www.halcyonics.example/play?id=7";
  flags = 4 | 8;
  EXPECT_EQ(Internet(), 0);
  EXPECT_EQ(platform.lastUrlFlags, std::to_string(0x20001000) + "/260");
  EXPECT_EQ(platform.log, (Strings{"Create shell link", "Path C:\\Program Files\\Browser\\browser.exe",
                                   "Arguments https://www.halcyonics.example/play?id=7", "Icon " + Utf8(icon) + ",0",
                                   "Save " + kQuickLaunch + "\\Game.lnk 1", "Pin " + kQuickLaunch + "\\Game.lnk",
                                   "Delete " + kQuickLaunch + "\\Game.lnk"}));
  platform.browserResult = static_cast<int32_t>(0x80070483);
  EXPECT_EQ(Internet(), static_cast<int32_t>(0x80070483));
}

TEST_F(BrokerShortcutMethodsTest, InternetShortcutsFailingAnyTestGetTheSameRefusalAndMakeNothing) {
  // Just inside each bound, a request passes.
  Sign(std::u16string(9, u'\u4e16') + u"ab", u"http://a/" + std::u16string(182, u'x'));
  EXPECT_EQ(Internet(), 0);

  const std::vector<std::pair<const char*, std::function<void(ShortcutWorld&)>>> spoilers = {
      {"no flags", [](auto& t) { t.flags = 0; }},
      {"another canonical form", [](auto& t) { t.platform.canonicalPaths[t.name] = u"a"; }},
      {"30 characters", [](auto& t) { t.Sign(std::u16string(30, u'g'), t.url); }},
      {"30 bytes of UTF-8", [](auto& t) { t.Sign(std::u16string(10, u'\u4e16'), t.url); }},
      {"not a web address", [](auto& t) { t.Sign(t.name, u"file:///C:/Windows/x.exe"); }},
      {"192 bytes of address", [](auto& t) { t.Sign(t.name, u"https://a/" + std::u16string(182, u'x')); }},
      {"icon outside the cache", [](auto& t) { t.icon = u"C:\\Users\\a\\Desktop\\Game.ico"; }},
      {"strings of two dimensions", [](auto& t) { t.stringsShape.dimensions = 2; }},
      {"strings without the mark-up", [](auto& t) { t.strings = "<shortcut>Game</shortcut>"; }},
      {"unsigned data", [](auto& t) { t.message = "tampered"; }},
      {"signed for another name",
       [](auto& t) { t.signatures.signedContents[t.message] = "<shortcut href=\"https://x/\">Game</shortcut>"; }},
      {"signed with a terminator", [](auto& t) { t.signatures.signedContents[t.message].push_back('\0'); }},
  };
  for (const auto& [what, spoil] : spoilers) {
    ShortcutWorld world;
    spoil(world);
    EXPECT_EQ(world.Internet(), kRefused) << what;
    EXPECT_TRUE(world.platform.log.empty()) << what;
  }
}
