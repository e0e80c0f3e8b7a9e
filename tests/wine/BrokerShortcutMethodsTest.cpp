// The shortcut and icon family through COM against the live server, as a
// sandboxed player reaches it: icon paths in the real cache, shortcut files on
// the prefix's desktop, the process-wide rate limit, and refusals that leave
// nothing behind.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedSafeArray.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kRefused = static_cast<HRESULT>(0x80010010);
const std::wstring kRedirect =
    L"https://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=lumen";

class BrokerShortcutLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
    for (const std::wstring& path : made_) DeleteFileW(path.c_str());
  }

  static std::wstring Desktop() { return WineTest::Folder(CSIDL_DESKTOPDIRECTORY); }
  static std::wstring IconCache() { return WineTest::RoamingFolder() + L"\\Corva\\Lumen Player\\Icon Cache"; }
  // A path the server may create; it is removed when the test ends.
  std::wstring Made(const std::wstring& path) {
    made_.push_back(path);
    return path;
  }
  // A fresh server, so that the rate limit starts over.
  void Restart() {
    broker_.reset();
    ASSERT_TRUE(AllServersEnded());
    ASSERT_EQ(Activate(broker_), S_OK);
  }

  HRESULT Desktop(const std::wstring& name, const std::wstring& url, const std::wstring& icon, ULONG flags) {
    return broker_->BrokerCreateDesktopShortcut(ScopedBstr(name.c_str()).get(), ScopedBstr(url.c_str()).get(),
                                                ScopedBstr(icon.c_str()).get(), flags);
  }
  HRESULT IconPath(const std::wstring& name, std::wstring& path, LONG overwrite = -1) {
    ScopedBstr result;
    HRESULT hr = overwrite < 0 ? broker_->BrokerCreateIconPath(ScopedBstr(name.c_str()).get(), result.receive())
                               : broker_->BrokerCreateIconPathV2(ScopedBstr(name.c_str()).get(), result.receive(),
                                                                  overwrite);
    path = result ? result.get() : L"<none>";
    return hr;
  }
  HRESULT Internet(const std::wstring& name, const std::wstring& url, const std::wstring& icon,
                   const std::string& signedData, const std::string& strings, ULONG flags = 1) {
    return broker_->BrokerCreateInternetShortcut(
        ScopedBstr(name.c_str()).get(), ScopedBstr(url.c_str()).get(), ScopedBstr(icon.c_str()).get(),
        WineTest::ByteArray(signedData).get(), WineTest::ByteArray(strings).get(), flags);
  }

  ComPtr<ILumenBroker6> broker_;
  std::vector<std::wstring> made_;
};

}  // namespace

TEST_F(BrokerShortcutLive, IconPathsLieInTheCacheWhichTheFirstCallMakes) {
  std::wstring path;
  ASSERT_EQ(IconPath(L"LumenIconProbe", path), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe.ico");
  EXPECT_EQ(GetFileAttributesW(IconCache().c_str()) & FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_FALSE(WineTest::FileExists(path)) << "only the path is made";

  WineTest::TempTree tree;
  tree.File(path, "icon");
  EXPECT_EQ(IconPath(L"LumenIconProbe", path), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe (2).ico");
  EXPECT_EQ(IconPath(L"LumenIconProbe", path, 1), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe.ico");
  EXPECT_EQ(IconPath(std::wstring(300, L'i'), path), static_cast<HRESULT>(0x80004005));
  EXPECT_EQ(path, L"<none>");
}

TEST_F(BrokerShortcutLive, DesktopShortcutsAreNumberedAndAtMostOnePer3001ms) {
  const std::wstring first = Made(Desktop() + L"\\LumenShortcutProbe.url");
  const std::wstring second = Made(Desktop() + L"\\LumenShortcutProbe (2).url");
  const std::wstring icon = IconCache() + L"\\LumenShortcutProbe.ico";
  ASSERT_EQ(Desktop(L"LumenShortcutProbe", kRedirect, icon, 1), S_OK);
  const std::string text = WineTest::ReadAll(first);
  EXPECT_NE(text.find("URL=" + WineTest::Utf8(kRedirect)), std::string::npos) << text;
  // The key's case is the writer's own.
  EXPECT_NE(WineTest::Utf8(WineTest::Lower(std::wstring(text.begin(), text.end())))
                .find(WineTest::Utf8(WineTest::Lower(L"IconFile=" + icon))),
            std::string::npos)
      << text;

  EXPECT_EQ(Desktop(L"LumenShortcutProbe", kRedirect, L"", 1), kRefused);
  EXPECT_FALSE(WineTest::FileExists(second));
  Sleep(3100);
  EXPECT_EQ(Desktop(L"LumenShortcutProbe", kRedirect, L"", 1), S_OK);
  EXPECT_TRUE(WineTest::FileExists(second));
}

TEST_F(BrokerShortcutLive, DesktopShortcutsOutsideTheRulesLeaveNoFile) {
  const struct {
    const wchar_t* name;
    std::wstring url;
  } cases[] = {
      {L"Lumen Probe", kRedirect},
      {L"LumenProbe", L"https://www.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=x"},
      {L"", kRedirect},
  };
  for (const auto& bad : cases) {
    Restart();
    EXPECT_EQ(Desktop(bad.name, bad.url, L"", 1), kRefused) << WineTest::Utf8(bad.name);
    EXPECT_FALSE(WineTest::FileExists(Made(Desktop() + L"\\" + bad.name + L".url")));
  }
}

TEST_F(BrokerShortcutLive, InternetShortcutsOutsideTheRulesLeaveNoFile) {
  const std::wstring url = L"https://www.halcyonics.example/lumen/play";
  const std::string markup = "<shortcut href=\"https://www.halcyonics.example/lumen/play\">LumenSite</shortcut>";
  const struct {
    const char* what;
    std::wstring name;
    std::wstring url;
    std::wstring icon;
  } cases[] = {
      {"empty name", L"", url, IconCache() + L"\\.ico"},
      {"30 characters", std::wstring(30, L'L'), url, IconCache() + L"\\" + std::wstring(30, L'L') + L".ico"},
      {"a colon", L"Lumen:Site", url, IconCache() + L"\\Lumen:Site.ico"},
      {"a parent step", L"..\\a", url, IconCache() + L"\\..\\a.ico"},
      {"not a web address", L"LumenSite", L"file:///C:/windows/notepad.exe", IconCache() + L"\\LumenSite.ico"},
      {"icon outside the cache", L"LumenSite", url, Desktop() + L"\\LumenSite.ico"},
      {"unsigned", L"LumenSite", url, IconCache() + L"\\LumenSite.ico"},
  };
  for (const auto& bad : cases) {
    EXPECT_EQ(Internet(bad.name, bad.url, bad.icon, "not a signed message", markup), kRefused) << bad.what;
    EXPECT_FALSE(WineTest::FileExists(Made(Desktop() + L"\\" + bad.name + L".lnk"))) << bad.what;
  }
}
