// The shortcut and icon family through COM against the live server, as a
// sandboxed player reaches it: icon paths in the real cache, shortcut files on
// the prefix's desktop, the process-wide rate limit, entitlements signed with
// the test kit, and refusals that leave nothing behind.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/BrokerIdentities.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedRegKey.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;
using WineTest::FileExists;
using WineTest::Utf8;

namespace {

constexpr HRESULT kRefused = static_cast<HRESULT>(0x80010010);
const std::wstring kRedirect =
    L"https://redirect.halcyonics.example/cn/lumenservice/shortcut/shortcutredirect/?url=lumen";
const std::wstring kSite = L"https://www.halcyonics.example/lumen/play";
const std::string kMarkup = "<shortcut href=\"https://www.halcyonics.example/lumen/play\">LumenSite</shortcut>";

std::wstring Desktop() { return WineTest::Folder(CSIDL_DESKTOPDIRECTORY); }
std::wstring IconCache() { return WineTest::RoamingFolder() + L"\\Corva\\Lumen Player\\Icon Cache"; }
std::string Entitlement(const wchar_t* name) {
  return WineTest::ReadAll(WineTest::BinaryDirectory() + L"\\shortcut-kit\\" + name);
}

std::wstring ServerKey() {
  const std::u16string_view id = BrokerIdentities::kServed.classId;
  return L"Software\\Classes\\CLSID\\" + std::wstring(id.begin(), id.end()) + L"\\LocalServer32";
}
bool ServerCommand(std::wstring* read, const std::wstring* write) {
  ScopedRegKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, ServerKey().c_str(), 0, KEY_QUERY_VALUE | KEY_SET_VALUE, key.receive()))
    return false;
  if (write)
    return !RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(write->c_str()),
                           static_cast<DWORD>((write->size() + 1) * sizeof(wchar_t)));
  wchar_t text[1024] = {};
  DWORD size = sizeof(text) - sizeof(wchar_t);
  if (RegQueryValueExW(key.get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size)) return false;
  *read = text;
  return true;
}

// A server whose host names the signing kit's test anchor in its download
// settings, so that the kit's entitlements verify as the vendor's would.
class BrokerShortcutLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    std::string settings = WineTest::ReadAll(WineTest::BinaryDirectory() + L"\\LumenUtilHost.settings");
    const size_t host = settings.find("Host {");
    ASSERT_NE(host, std::string::npos);
    const std::wstring anchor = WineTest::BinaryDirectory() + L"\\addon-kit\\anchor.der";
    settings.insert(host + 6, "\n  DownloadSettings \"" + Utf8(anchor) + "\";");
    const std::wstring settingsPath = WineTest::TestDirectory(L"Shortcuts") + L"\\kit-anchor.settings";
    tree_.Directory(WineTest::TestDirectory(L"Shortcuts"));
    tree_.File(settingsPath, settings);
    const std::wstring command = L"\"" + HostPath() + L"\" -settings \"" + settingsPath + L"\"";
    ASSERT_TRUE(ServerCommand(&original_, nullptr));
    ASSERT_TRUE(ServerCommand(nullptr, &command));
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  // Only the command is put back: registering again would undo the test proxy.
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
    if (!original_.empty()) ServerCommand(nullptr, &original_);
    for (const std::wstring& path : made_) DeleteFileW(path.c_str());
  }

  // A path the server may create; it is removed when the test ends.
  std::wstring Made(const std::wstring& path) {
    made_.push_back(path);
    return path;
  }
  HRESULT Shortcut(const std::wstring& name, const std::wstring& url, const std::wstring& icon, ULONG flags = 1) {
    return broker_->BrokerCreateDesktopShortcut(ScopedBstr(name.c_str()).get(), ScopedBstr(url.c_str()).get(),
                                                ScopedBstr(icon.c_str()).get(), flags);
  }
  HRESULT IconPath(const std::wstring& name, std::wstring& path, LONG overwrite = -1) {
    ScopedBstr result;
    HRESULT hr = overwrite < 0
                     ? broker_->BrokerCreateIconPath(ScopedBstr(name.c_str()).get(), result.receive())
                     : broker_->BrokerCreateIconPathV2(ScopedBstr(name.c_str()).get(), result.receive(), overwrite);
    path = result ? result.get() : L"<none>";
    return hr;
  }
  HRESULT Internet(const std::wstring& name, const std::wstring& url, const std::wstring& icon,
                   const std::string& signedData, const std::string& strings = kMarkup, ULONG flags = 1) {
    return broker_->BrokerCreateInternetShortcut(ScopedBstr(name.c_str()).get(), ScopedBstr(url.c_str()).get(),
                                                 ScopedBstr(icon.c_str()).get(), WineTest::ByteArray(signedData).get(),
                                                 WineTest::ByteArray(strings).get(), flags);
  }

  ComPtr<ILumenBroker6> broker_;
  std::vector<std::wstring> made_;
  WineTest::TempTree tree_;
  std::wstring original_;
};

}  // namespace

TEST_F(BrokerShortcutLive, IconPathsLieInTheCacheWhichTheFirstCallMakes) {
  std::wstring path;
  ASSERT_EQ(IconPath(L"LumenIconProbe", path), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe.ico");
  EXPECT_TRUE(PathIsDirectoryW(IconCache().c_str()));
  EXPECT_FALSE(FileExists(path)) << "only the path is made";
  tree_.File(path, "icon");
  EXPECT_EQ(IconPath(L"LumenIconProbe", path), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe (2).ico");
  EXPECT_EQ(IconPath(L"LumenIconProbe", path, 1), S_OK);
  EXPECT_EQ(path, IconCache() + L"\\LumenIconProbe.ico");
}

TEST_F(BrokerShortcutLive, DesktopShortcutsAreNumberedAndAtMostOnePer3001ms) {
  const std::wstring first = Made(Desktop() + L"\\LumenShortcutProbe.url");
  const std::wstring second = Made(Desktop() + L"\\LumenShortcutProbe (2).url");
  const std::wstring icon = IconCache() + L"\\LumenShortcutProbe.ico";
  ASSERT_EQ(Shortcut(L"LumenShortcutProbe", kRedirect, icon), S_OK);
  // The keys' case is the writer's own.
  const std::string bytes = WineTest::ReadAll(first);
  const std::wstring text = WineTest::Lower(std::wstring(bytes.begin(), bytes.end()));
  EXPECT_NE(text.find(WineTest::Lower(L"URL=" + kRedirect)), std::wstring::npos) << Utf8(text);
  EXPECT_NE(text.find(WineTest::Lower(L"IconFile=" + icon)), std::wstring::npos) << Utf8(text);

  EXPECT_EQ(Shortcut(L"LumenShortcutProbe", kRedirect, L""), kRefused);
  EXPECT_FALSE(FileExists(second));
  Sleep(3100);
  // Outside the rules, even after the wait.
  EXPECT_EQ(Shortcut(L"Lumen Shortcut", kRedirect, L""), kRefused);
  Sleep(3100);
  EXPECT_EQ(Shortcut(L"LumenShortcutProbe", L"https://www.halcyonics.example/?url=lumen", L""), kRefused);
  EXPECT_FALSE(FileExists(Made(Desktop() + L"\\Lumen Shortcut.url")));
  EXPECT_FALSE(FileExists(second));
  Sleep(3100);
  EXPECT_EQ(Shortcut(L"LumenShortcutProbe", kRedirect, L""), S_OK);
  EXPECT_TRUE(FileExists(second));
}

TEST_F(BrokerShortcutLive, AnEntitledShortcutIsALinkThatOpensTheAddressInTheDefaultBrowser) {
  const std::wstring link = Made(Desktop() + L"\\LumenSite.lnk");
  const std::wstring icon = IconCache() + L"\\LumenSite.ico";
  const std::string good = Entitlement(L"entitlement-good.p7");
  ASSERT_FALSE(good.empty()) << "the shortcut kit is missing";
  ASSERT_EQ(Internet(L"LumenSite", kSite, icon, good, "<strings>" + kMarkup + "</strings>"), S_OK);

  ComPtr<IShellLinkW> shell;
  ComPtr<IPersistFile> file;
  ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, shell.receiveVoid()),
            S_OK);
  ASSERT_EQ(shell->QueryInterface(IID_IPersistFile, file.receiveVoid()), S_OK);
  ASSERT_EQ(file->Load(link.c_str(), STGM_READ), S_OK);
  wchar_t text[MAX_PATH] = {}, browser[MAX_PATH] = {};
  ASSERT_EQ(shell->GetArguments(text, MAX_PATH), S_OK);
  EXPECT_EQ(std::wstring(text), kSite);
  int index = -1;
  ASSERT_EQ(shell->GetIconLocation(text, MAX_PATH, &index), S_OK);
  EXPECT_EQ(std::wstring(text) + L"," + std::to_wstring(index), icon + L",0");
  DWORD size = MAX_PATH;
  ASSERT_EQ(AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, L"http", L"open", browser, &size), S_OK);
  ASSERT_EQ(shell->GetPath(text, MAX_PATH, nullptr, 0), S_OK);
  EXPECT_EQ(WineTest::Lower(text), WineTest::Lower(browser));

  // No rate limit here: the entitlement is the bound.
  EXPECT_EQ(Internet(L"LumenSite", kSite, icon, good), S_OK);
  EXPECT_TRUE(FileExists(Made(Desktop() + L"\\LumenSite (2).lnk")));
  // The prefix has no quick launch folder: the desktop copy is saved first, then that save's failure ends the call.
  const HRESULT quickLaunch = Internet(L"LumenSite", kSite, icon, good, kMarkup, 1 | 4 | 8);
  EXPECT_TRUE(FAILED(quickLaunch) && quickLaunch != kRefused) << std::hex << quickLaunch;
  EXPECT_TRUE(FileExists(Made(Desktop() + L"\\LumenSite (3).lnk")));
}

TEST_F(BrokerShortcutLive, InternetShortcutsOutsideTheRulesOrTheirEntitlementLeaveNoFile) {
  const std::string good = Entitlement(L"entitlement-good.p7");
  const std::wstring icon = IconCache() + L"\\LumenSite.ico";
  const struct {
    const char* what;
    std::wstring name, url, icon;
    std::string entitlement;
  } cases[] = {
      {"empty name", L"", kSite, IconCache() + L"\\.ico", good},
      {"30 characters", std::wstring(30, L'L'), kSite, IconCache() + L"\\" + std::wstring(30, L'L') + L".ico", good},
      {"a colon", L"Lumen:Site", kSite, IconCache() + L"\\Lumen:Site.ico", good},
      {"a parent step", L"..\\a", kSite, IconCache() + L"\\..\\a.ico", good},
      {"not a web address", L"LumenSite", L"file:///C:/windows/notepad.exe", icon, good},
      {"icon outside the cache", L"LumenSite", kSite, Desktop() + L"\\LumenSite.ico", good},
      {"another anchor", L"LumenSite", kSite, icon, Entitlement(L"entitlement-other-anchor.p7")},
      {"one byte altered", L"LumenSite", kSite, icon, Entitlement(L"entitlement-altered.p7")},
      {"signed for another name", L"LumenSite", kSite, icon, Entitlement(L"entitlement-other-name.p7")},
  };
  for (const auto& bad : cases) {
    EXPECT_EQ(Internet(bad.name, bad.url, bad.icon, bad.entitlement), kRefused) << bad.what;
    EXPECT_FALSE(FileExists(Made(Desktop() + L"\\" + bad.name + L".lnk"))) << bad.what;
  }
  EXPECT_EQ(Internet(L"LumenSite", kSite, icon, good, "LumenSite"), kRefused) << "mark-up missing from the strings";
  EXPECT_FALSE(FileExists(Desktop() + L"\\LumenSite.lnk"));
}
