// The shortcut and icon family through COM against the live server, as a
// sandboxed player reaches it: icon paths in the real cache, shortcut files on
// the prefix's desktop, the process-wide rate limit, and refusals that leave
// nothing behind.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/BrokerIdentities.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedRegKey.h"
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

// The server started with a host whose download settings name the signing
// kit's test anchor, so that the kit's entitlements verify.
class BrokerShortcutLiveWithKit : public BrokerShortcutLive {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    std::string settings = WineTest::ReadAll(WineTest::BinaryDirectory() + L"\\LumenUtilHost.settings");
    const size_t host = settings.find("Host {");
    ASSERT_NE(host, std::string::npos);
    const std::wstring anchor = WineTest::BinaryDirectory() + L"\\addon-kit\\anchor.der";
    settings.insert(host + 6, "\n  DownloadSettings \"" + WineTest::Utf8(anchor) + "\";");
    settingsPath_ = WineTest::TestDirectory(L"Shortcuts") + L"\\kit-anchor.settings";
    tree_.Directory(WineTest::TestDirectory(L"Shortcuts"));
    tree_.File(settingsPath_, settings);
    const std::wstring command = L"\"" + HostPath() + L"\" -settings \"" + settingsPath_ + L"\"";
    ASSERT_TRUE(ReadServerCommand(original_));
    ASSERT_TRUE(WriteServerCommand(command));
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  // Only the command is put back: registering again would undo the test proxy.
  void TearDown() override {
    BrokerShortcutLive::TearDown();
    if (!original_.empty()) WriteServerCommand(original_);
  }

  static std::wstring ServerKey() {
    const std::u16string_view id = BrokerIdentities::kServed.classId;
    return L"Software\\Classes\\CLSID\\" + std::wstring(id.begin(), id.end()) + L"\\LocalServer32";
  }
  static bool ReadServerCommand(std::wstring& command) {
    wchar_t text[1024] = {};
    DWORD size = sizeof(text) - sizeof(wchar_t);
    if (RegGetValueW(HKEY_LOCAL_MACHINE, ServerKey().c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &size) !=
        ERROR_SUCCESS)
      return false;
    command = text;
    return true;
  }
  static bool WriteServerCommand(const std::wstring& command) {
    ScopedRegKey server;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, ServerKey().c_str(), 0, KEY_SET_VALUE, server.receive()) != ERROR_SUCCESS)
      return false;
    return RegSetValueExW(server.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()),
                          static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
  }

  static std::wstring Kit(const wchar_t* name) {
    return WineTest::BinaryDirectory() + L"\\shortcut-kit\\" + name;
  }
  static std::string Entitlement(const wchar_t* name) { return WineTest::ReadAll(Kit(name)); }

  const std::wstring url_ = L"https://www.halcyonics.example/lumen/play";
  const std::string markup_ = "<shortcut href=\"https://www.halcyonics.example/lumen/play\">LumenSite</shortcut>";
  WineTest::TempTree tree_;
  std::wstring settingsPath_;
  std::wstring original_;
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

TEST_F(BrokerShortcutLiveWithKit, AnEntitledShortcutIsALinkThatOpensTheAddressInTheDefaultBrowser) {
  const std::wstring link = Made(Desktop() + L"\\LumenSite.lnk");
  const std::wstring icon = IconCache() + L"\\LumenSite.ico";
  const std::string good = Entitlement(L"entitlement-good.p7");
  ASSERT_FALSE(good.empty()) << "the shortcut kit is missing";
  ASSERT_EQ(Internet(L"LumenSite", url_, icon, good, "<strings>" + markup_ + "</strings>"), S_OK);

  ComPtr<IShellLinkW> shell;
  ComPtr<IPersistFile> file;
  ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                             shell.receiveVoid()), S_OK);
  ASSERT_EQ(shell->QueryInterface(IID_IPersistFile, file.receiveVoid()), S_OK);
  ASSERT_EQ(file->Load(link.c_str(), STGM_READ), S_OK);
  wchar_t text[MAX_PATH] = {};
  ASSERT_EQ(shell->GetArguments(text, MAX_PATH), S_OK);
  EXPECT_EQ(std::wstring(text), url_);
  int index = -1;
  ASSERT_EQ(shell->GetIconLocation(text, MAX_PATH, &index), S_OK);
  EXPECT_EQ(std::wstring(text), icon);
  EXPECT_EQ(index, 0);
  ASSERT_EQ(shell->GetPath(text, MAX_PATH, nullptr, 0), S_OK);
  wchar_t browser[MAX_PATH] = {};
  DWORD size = MAX_PATH;
  ASSERT_EQ(AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, L"http", L"open", browser, &size), S_OK);
  EXPECT_EQ(WineTest::Lower(text), WineTest::Lower(browser));

  // No rate limit here: the entitlement is the bound.
  EXPECT_EQ(Internet(L"LumenSite", url_, icon, good, markup_), S_OK);
  EXPECT_TRUE(WineTest::FileExists(Made(Desktop() + L"\\LumenSite (2).lnk")));
}

TEST_F(BrokerShortcutLiveWithKit, EntitlementsFromAnotherAnchorAlteredOrForAnotherShortcutLeaveNoFile) {
  const std::wstring icon = IconCache() + L"\\LumenSite.ico";
  for (const wchar_t* name :
       {L"entitlement-other-anchor.p7", L"entitlement-altered.p7", L"entitlement-other-name.p7"}) {
    const std::string entitlement = Entitlement(name);
    ASSERT_FALSE(entitlement.empty()) << WineTest::Utf8(name);
    EXPECT_EQ(Internet(L"LumenSite", url_, icon, entitlement, markup_), kRefused) << WineTest::Utf8(name);
    EXPECT_FALSE(WineTest::FileExists(Made(Desktop() + L"\\LumenSite.lnk"))) << WineTest::Utf8(name);
  }
  // The good entitlement without the mark-up among the strings.
  EXPECT_EQ(Internet(L"LumenSite", url_, icon, Entitlement(L"entitlement-good.p7"), "LumenSite"), kRefused);
  EXPECT_FALSE(WineTest::FileExists(Desktop() + L"\\LumenSite.lnk"));
}
