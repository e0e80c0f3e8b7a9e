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
constexpr int32_t kNoInterface = static_cast<int32_t>(0x80004002);
const std::u16string kRedirect =
    u"https://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=game";
const std::u16string kCache = u"C:\\Users\\a\\AppData\\Roaming\\Corva\\Lumen Player\\Icon Cache";
const std::u16string kIcon = kCache + u"\\Game.ico";
const std::string kQuickLaunch = "C:\\Users\\a\\AppData\\Roaming\\Microsoft\\Internet Explorer\\Quick Launch";

class ShortcutWorld : public ::testing::Test {
 protected:
  FakeShortcutPlatform platform;
  ShortcutRateLimit rateLimit;
  FakeSignedMessageCheck signatures;
  BrokerShortcutMethods methods{platform, rateLimit, signatures};

  // The steps after the object was made, without the file probes.
  Strings Steps() const { return platform.log; }
};

// Desktop shortcuts, each one 3,001 ms after the last unless a test moves the clock itself.
class DesktopShortcut : public ShortcutWorld {
 protected:
  int32_t Create(const char16_t* name, const std::u16string& url, const char16_t* icon, uint32_t flags) {
    platform.tick += 3001;
    return methods.CreateDesktopShortcut(name, url.c_str(), icon, flags);
  }
};

// An internet shortcut request that passes every test; each test spoils one part.
struct InternetRequest {
  FakeShortcutPlatform platform;
  ShortcutRateLimit rateLimit;
  FakeSignedMessageCheck signatures;
  BrokerShortcutMethods methods{platform, rateLimit, signatures};
  std::u16string name = u"Game";
  std::u16string url = u"https://www.halcyonics.example/play?id=7";
  std::u16string icon = kIcon;
  std::string strings = "head<shortcut href=\"https://www.halcyonics.example/play?id=7\">Game</shortcut>tail";
  std::string message = "signed-message";
  uint32_t flags = 1;
  ByteArrayShape stringsShape{1, 1, 0, 0};

  InternetRequest() { Sign(name, url); }
  // Names the shortcut consistently everywhere: its icon, the strings and the signed mark-up.
  void Sign(const std::u16string& newName, const std::u16string& newUrl) {
    name = newName;
    url = newUrl;
    icon = kCache + u"\\" + name + u".ico";
    const std::string markup =
        "<shortcut href=\"" + MString(url.c_str()).ToUtf8() + "\">" + MString(name.c_str()).ToUtf8() + "</shortcut>";
    strings = "head" + markup + "tail";
    signatures.signedContents[message] = markup;
  }
  int32_t Create() {
    stringsShape.count = static_cast<uint32_t>(strings.size());
    ShortcutByteArray stringArray{true, stringsShape, reinterpret_cast<const uint8_t*>(strings.data())};
    ShortcutByteArray signedArray{true, {1, 1, 0, static_cast<uint32_t>(message.size())},
                                  reinterpret_cast<const uint8_t*>(message.data())};
    return methods.CreateInternetShortcut(name.c_str(), url.c_str(), icon.c_str(), signedArray, stringArray, flags);
  }
  const Strings& Steps() const { return platform.log; }
};

class InternetShortcut : public ::testing::Test, public InternetRequest {};

std::string Utf8(const std::u16string& text) { return MString(text.c_str()).ToUtf8(); }

}  // namespace

TEST_F(ShortcutWorld, IconPathsAreMadeInTheCacheWhichIsCreatedFirst) {
  std::u16string path;
  EXPECT_EQ(methods.CreateIconPath(u"Game", false, path), 0);
  EXPECT_EQ(path, kIcon);
  EXPECT_EQ(Steps(), Strings{"Directory C:\\Users\\a\\AppData\\Roaming\\Corva\\Lumen Player\\Icon Cache"});
  platform.files.insert(kIcon);
  EXPECT_EQ(methods.CreateIconPath(u"Game", false, path), 0);
  EXPECT_EQ(path, kCache + u"\\Game (2).ico");
  EXPECT_EQ(methods.CreateIconPath(u"Game", true, path), 0);
  EXPECT_EQ(path, kIcon);
  EXPECT_EQ(methods.CreateIconPath(std::u16string(300, u'g').c_str(), false, path), kFail);
  platform.folders.erase(26);
  EXPECT_EQ(methods.CreateIconPath(u"Game", false, path), kFail);
}

TEST_F(ShortcutWorld, RateLimitRefusesWithin3000msAndEveryCallRestartsTheWait) {
  rateLimit.Admit(1000);
  EXPECT_FALSE(rateLimit.Admit(4000));
  EXPECT_FALSE(rateLimit.Admit(7000));  // 3,000 after the refused call
  EXPECT_TRUE(rateLimit.Admit(10001));
  // Across the counter's wrap the distance is still 3,001.
  rateLimit.Admit(0xFFFFFFFF - 1000);
  EXPECT_TRUE(rateLimit.Admit(2000));
}

TEST_F(DesktopShortcut, ASecondCallTooSoonIsRefusedAndSoIsOneRefusedForItsNameEarlier) {
  platform.tick = 50000;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), 0);
  platform.tick += 3000;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), kRefused);
  platform.tick += 3001;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), 0);
  platform.tick += 3001;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"My Game", kRedirect.c_str(), u"", 1), kRefused);
  platform.tick += 3000;
  EXPECT_EQ(methods.CreateDesktopShortcut(u"Game", kRedirect.c_str(), u"", 1), kRefused);
}

TEST_F(DesktopShortcut, SavesAtEachPlaceInOrderThenPinsAndDeletesTheQuickLaunchCopy) {
  EXPECT_EQ(Create(u"Game", kRedirect, kIcon.c_str(), 15), 0);
  EXPECT_EQ(Steps(), (Strings{"Create internet shortcut",
                              "Url " + Utf8(kRedirect),
                              "Icon " + Utf8(kIcon) + ",0",
                              "Save C:\\Users\\a\\Desktop\\Game.url 1",
                              "Save C:\\Users\\a\\Start Menu\\Programs\\Game.lnk 1",
                              "Save " + kQuickLaunch + "\\Game.lnk 1",
                              "Pin " + kQuickLaunch + "\\Game.lnk",
                              "Delete " + kQuickLaunch + "\\Game.lnk"}));
}

TEST_F(DesktopShortcut, ATakenNameIsNumberedAndThePinNeedsTheQuickLaunchCopy) {
  platform.files.insert(u"C:\\Users\\a\\Desktop\\Game.url");
  EXPECT_EQ(Create(u"Game", kRedirect, u"", 1 | 8), 0);
  EXPECT_EQ(Steps(), (Strings{"Create internet shortcut", "Url " + Utf8(kRedirect),
                              "Save C:\\Users\\a\\Desktop\\Game (2).url 1"}));
  platform.log.clear();
  EXPECT_EQ(Create(u"Game", kRedirect, nullptr, 8), 0);
  EXPECT_EQ(Steps().size(), 2u);  // made and pointed, saved nowhere
}

TEST_F(DesktopShortcut, AFailingStepEndsTheCallWithItsResult) {
  platform.createResult = kNoInterface;
  EXPECT_EQ(Create(u"Game", kRedirect, u"", 1), kNoInterface);
  platform.createResult = 0;
  platform.failingSteps["Icon"] = kFail;
  EXPECT_EQ(Create(u"Game", kRedirect, kIcon.c_str(), 1), kFail);
  platform.failingSteps = {{"Save", static_cast<int32_t>(0x80070003)}};
  platform.log.clear();
  EXPECT_EQ(Create(u"Game", kRedirect, u"", 1 | 2 | 4 | 8), static_cast<int32_t>(0x80070003));
  EXPECT_EQ(Steps().back(), "Save C:\\Users\\a\\Desktop\\Game.url 1");
}

TEST_F(DesktopShortcut, BadArgumentsAreRefusedBeforeAnythingIsMade) {
  EXPECT_EQ(Create(nullptr, kRedirect, u"", 1), kRefused);
  EXPECT_EQ(Create(u"", kRedirect, u"", 1), kRefused);
  EXPECT_EQ(Create(u"Game", u"", u"", 1), kRefused);
  EXPECT_EQ(Create(u"Game", kRedirect, u"", 0), kRefused);
  EXPECT_EQ(Create(u"..\\Game", kRedirect, u"", 1), kRefused);
  EXPECT_EQ(Create(u"Game", u"https://www.halcyonics.example/", u"", 1), kRefused);
  EXPECT_TRUE(Steps().empty());
}

TEST_F(InternetShortcut, AnEntitledShortcutOpensTheCanonicalAddressInTheDefaultBrowser) {
  url = u"https://www.halcyonics.example/play?id=7#";
  platform.canonicalUrls[url] = u"https://www.halcyonics.example/play?id=7";
  flags = 4 | 8;
  EXPECT_EQ(Create(), 0);
  EXPECT_EQ(platform.lastUrlFlags, std::to_string(0x20001000) + "/260");
  EXPECT_EQ(Steps(), (Strings{"Create shell link", "Path C:\\Program Files\\Browser\\browser.exe",
                              "Arguments https://www.halcyonics.example/play?id=7",
                              "Icon " + Utf8(kIcon) + ",0", "Save " + kQuickLaunch + "\\Game.lnk 1",
                              "Pin " + kQuickLaunch + "\\Game.lnk", "Delete " + kQuickLaunch + "\\Game.lnk"}));
  EXPECT_EQ(signatures.calls, 1);
}

TEST_F(InternetShortcut, EveryPlaceGetsALinkAndTheIconMayBeANumberedCopy) {
  icon = kCache + u"\\Game (3).ico";
  flags = 1 | 2;
  EXPECT_EQ(Create(), 0);
  EXPECT_EQ(platform.files.count(u"C:\\Users\\a\\Desktop\\Game.lnk"), 1u);
  EXPECT_EQ(platform.files.count(u"C:\\Users\\a\\Start Menu\\Programs\\Game.lnk"), 1u);
}

TEST_F(InternetShortcut, EachFailedTestGivesTheSameRefusalAndMakesNothing) {
  const std::vector<std::pair<const char*, std::function<void(InternetRequest&)>>> spoilers = {
      {"empty name", [](auto& t) { t.name.clear(); }},
      {"no flags", [](auto& t) { t.flags = 0; }},
      {"empty icon", [](auto& t) { t.icon.clear(); }},
      {"name with another canonical form",
       [](auto& t) { t.name = u"..\\a", t.platform.canonicalPaths[u"..\\a"] = u"a"; }},
      {"30 characters", [](auto& t) { t.Sign(std::u16string(30, u'g'), t.url); }},
      {"a dot", [](auto& t) { t.Sign(u"Game.exe", t.url); }},
      {"a control character", [](auto& t) { t.Sign(u"Ga\x1fme", t.url); }},
      {"30 bytes of UTF-8", [](auto& t) { t.Sign(std::u16string(10, u'\u4e16'), t.url); }},
      {"not a web address", [](auto& t) { t.Sign(t.name, u"file:///C:/Windows/x.exe"); }},
      {"address the shell rejects", [](auto& t) { t.platform.failingUrls.insert(t.url); }},
      {"192 bytes of address", [](auto& t) { t.Sign(t.name, u"https://a/" + std::u16string(182, u'x')); }},
      {"icon outside the cache", [](auto& t) { t.icon = u"C:\\Users\\a\\Desktop\\Game.ico"; }},
      {"icon of another name", [](auto& t) { t.icon = kCache + u"\\Other.ico"; }},
      {"icon with a letter after the name", [](auto& t) { t.icon = kCache + u"\\Game x.ico"; }},
      {"no roaming folder", [](auto& t) { t.platform.folders.erase(26); }},
      {"strings of two dimensions", [](auto& t) { t.stringsShape.dimensions = 2; }},
      {"strings without the mark-up", [](auto& t) { t.strings = "<shortcut>Game</shortcut>"; }},
      {"unsigned data", [](auto& t) { t.message = "tampered"; }},
      {"signed for another shortcut",
       [](auto& t) { t.signatures.signedContents[t.message] = "<shortcut href=\"https://x/\">Game</shortcut>"; }},
      {"signed mark-up with a terminator",
       [](auto& t) { t.signatures.signedContents[t.message].push_back('\0'); }},
      {"signed data empty", [](auto& t) { t.message.clear(); }},
  };
  // Just inside each bound, the request passes.
  InternetRequest longest;
  longest.Sign(std::u16string(9, u'\u4e16') + u"ab", u"http://a/" + std::u16string(182, u'x'));
  EXPECT_EQ(longest.Create(), 0);
  for (const auto& [what, spoil] : spoilers) {
    InternetRequest request;
    spoil(request);
    EXPECT_EQ(request.Create(), kRefused) << what;
    EXPECT_TRUE(request.Steps().empty()) << what;
  }
}

TEST_F(InternetShortcut, AbsentArraysAreRefusedAndPlatformFailuresPassThrough) {
  ShortcutByteArray absent;
  EXPECT_EQ(methods.CreateInternetShortcut(name.c_str(), url.c_str(), icon.c_str(), absent, absent, flags), kRefused);
  platform.browserResult = static_cast<int32_t>(0x80070483);
  EXPECT_EQ(Create(), static_cast<int32_t>(0x80070483));
  platform.browserResult = 0;
  platform.failingSteps["Arguments"] = kFail;
  EXPECT_EQ(Create(), kFail);
  EXPECT_EQ(Steps().back(), "Arguments https://www.halcyonics.example/play?id=7");
}
