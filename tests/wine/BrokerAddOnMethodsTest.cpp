// The add-on family through COM against the live server, as a sandboxed player
// drives it: downloads from a loopback server standing in for the vendor's
// download host (reached through the prefix's proxy setting), products stored
// under the user's profile, started, asked and probed.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedRegKey.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr wchar_t kInternetSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr wchar_t kProduct[] = L"LumenSample";
constexpr DWORD kServerWait = 20000;

std::wstring Kit() { return WineTest::BinaryDirectory() + L"\\addon-kit"; }
std::wstring ProductFolder() {
  return WineTest::RoamingFolder() + L"\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\LumenSample";
}
std::wstring StoredExe() { return ProductFolder() + L"\\LumenSample.exe"; }

// The Unix path of a file of this prefix, for the server's command line.
std::string UnixPath(const std::wstring& path) {
  using ToUnix = char*(CDECL*)(LPCWSTR);
  auto toUnix = reinterpret_cast<ToUnix>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  char* unix = toUnix ? toUnix(path.c_str()) : nullptr;
  std::string result = unix ? unix : "";
  if (unix) HeapFree(GetProcessHeap(), 0, unix);
  return result;
}

void SetProxy(DWORD enable, const std::wstring& server) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kInternetSettings, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr))
    return;
  RegSetValueExW(key, L"ProxyEnable", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&enable), sizeof(enable));
  if (server.empty())
    RegDeleteValueW(key, L"ProxyServer");
  else
    RegSetValueExW(key, L"ProxyServer", 0, REG_SZ, reinterpret_cast<const BYTE*>(server.c_str()),
                   static_cast<DWORD>((server.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
}

void RemoveProduct() {
  for (const wchar_t* name : {L"\\LumenSample.exe", L"\\LumenSample.cfg", L"\\digest.s"})
    DeleteFileW((ProductFolder() + name).c_str());
  RemoveDirectoryW(ProductFolder().c_str());
}

struct Fetched {
  HRESULT opened;
  ULONG position;
  ULONG length;
  ULONG code;
};

class BrokerAddOnMethodsLive : public WineTest::LiveBrokerTest {
 protected:
  static void SetUpTestSuite() {
    LiveBrokerTest::SetUpTestSuite();
    // The loopback server, started as the Unix program it is; it ends by itself after two minutes.
    const std::wstring portFile = Kit() + L"\\server.port";
    DeleteFileW(portFile.c_str());
    std::wstring command = L"Z:\\usr\\bin\\python3 ";
    const std::string script = UnixPath(Kit() + L"\\addon-server.py");
    const std::string port = UnixPath(portFile);
    command += std::wstring(script.begin(), script.end()) + L" --lifetime 120 --port-file " +
               std::wstring(port.begin(), port.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!script.empty() &&
        CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
      CloseHandle(process.hThread);
      CloseHandle(process.hProcess);
    }
    for (DWORD waited = 0; waited < kServerWait && !WineTest::FileExists(portFile); waited += 100) Sleep(100);
    const std::string number = WineTest::ReadAll(portFile);
    if (!number.empty()) SetProxy(1, L"127.0.0.1:" + std::wstring(number.begin(), number.end()));
    serverReady_ = !number.empty();
  }
  static void TearDownTestSuite() {
    if (serverReady_) {
      // Best effort: the server also stops on its own.
      ComPtr<ILumenBroker6> broker;
      if (SUCCEEDED(Activate(broker))) {
        ScopedBstr url(L"http://download.halcyonics.example/quit");
        ULONG cookie = 0;
        broker->BrokerLMOpenDownload(url.get(), &cookie);
      }
      broker.reset();
      AllServersEnded();
    }
    SetProxy(0, L"");
    LiveBrokerTest::TearDownTestSuite();
  }

  void SetUp() override {
    LiveBrokerTest::SetUp();
    ASSERT_TRUE(serverReady_) << "the loopback download server did not start";
    RemoveProduct();
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
    RemoveProduct();
  }

  // Opens route/file, reads until the end or until the position stops moving, and closes under name.
  Fetched Fetch(const std::wstring& route, const wchar_t* name) {
    Fetched fetched{E_FAIL, 0, 0, 0xDEAD};
    ScopedBstr url((L"http://download.halcyonics.example/" + route).c_str());
    ULONG cookie = 0xDEAD;
    fetched.opened = broker_->BrokerLMOpenDownload(url.get(), &cookie);
    if (FAILED(fetched.opened)) {
      EXPECT_EQ(cookie, 0u);
      return fetched;
    }
    for (int stalls = 0, reads = 0; stalls < 3 && reads < 10000; ++reads) {
      const ULONG before = fetched.position;
      if (FAILED(broker_->BrokerLMUpdateDownload(cookie, &fetched.position, &fetched.length))) break;
      if (fetched.position >= fetched.length) break;
      if (fetched.position == before) ++stalls;
    }
    ScopedBstr product(name);
    EXPECT_EQ(broker_->BrokerLMCloseDownload(cookie, name ? product.get() : nullptr, &fetched.code), S_OK);
    return fetched;
  }
  // Package, the product's other file (which it would make itself), then the digest.
  void StoreProduct() {
    ASSERT_EQ(Fetch(L"kit/pkg-good.p7", kProduct).code, 0u);
    ASSERT_TRUE(CopyFileW((Kit() + L"\\product\\LumenSample.cfg").c_str(), (ProductFolder() + L"\\LumenSample.cfg").c_str(),
                          FALSE));
    ASSERT_EQ(Fetch(L"kit/digest-good.s", L"DIGEST#LumenSample").code, 0u);
  }
  HRESULT IsRunning(const wchar_t* name = kProduct) {
    ScopedBstr product(name);
    return broker_->BrokerLMIsRunning(product.get());
  }
  HRESULT Launch(const std::wstring& parameters) {
    ScopedBstr product(kProduct);
    ScopedBstr line(parameters.c_str());
    return broker_->BrokerLMLaunch(product.get(), line.get());
  }

  static inline bool serverReady_ = false;
  ComPtr<ILumenBroker6> broker_;
};

}  // namespace

TEST_F(BrokerAddOnMethodsLive, ProductIsDownloadedStoredStartedAskedAndSeenToEnd) {
  StoreProduct();
  EXPECT_EQ(WineTest::ReadAll(StoredExe()), WineTest::ReadAll(Kit() + L"\\product\\LumenSample.exe"));

  ULONG ms = 0;
  ULONG ls = 0;
  ScopedBstr product(kProduct);
  EXPECT_EQ(broker_->BrokerLMGetVersion(product.get(), &ms, &ls), S_OK);
  EXPECT_EQ(ms, 0x00030001u);
  EXPECT_EQ(ls, 0x0004000Fu);

  EXPECT_EQ(IsRunning(), 1);
  const std::wstring record = WineTest::TestDirectory(L"addon") + L"\\commandline.txt";
  CreateDirectoryW(WineTest::TestDirectory(L"").c_str(), nullptr);
  CreateDirectoryW(WineTest::TestDirectory(L"addon").c_str(), nullptr);
  DeleteFileW(record.c_str());
  ASSERT_EQ(Launch(L"LumenSample.exe \"" + record + L"\" 3000"), S_OK);
  // Started and idle when the call returns: its mutex is held, upper case or not.
  EXPECT_EQ(IsRunning(), S_OK);
  EXPECT_EQ(IsRunning(L"LUMENSAMPLE"), S_OK);
  EXPECT_NE(WineTest::ReadAll(record).find("commandline.txt\" 3000"), std::string::npos) << WineTest::ReadAll(record);
  HRESULT running = S_OK;
  for (int i = 0; i < 100 && running == S_OK; ++i) {
    Sleep(100);
    running = IsRunning();
  }
  EXPECT_EQ(running, 1) << "the product should have ended after 3 s";
  DeleteFileW(record.c_str());
}

TEST_F(BrokerAddOnMethodsLive, OneChangedByteOfAStoredFileStopsLaunchAndVersion) {
  StoreProduct();
  std::string exe = WineTest::ReadAll(StoredExe());
  ASSERT_GT(exe.size(), 1000u);
  exe[exe.size() / 2] ^= 1;
  {
    ScopedHandle file(CreateFileW(StoredExe().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file.get(), exe.data(), static_cast<DWORD>(exe.size()), &written, nullptr));
  }
  EXPECT_EQ(Launch(L"LumenSample.exe"), kFailure);
  EXPECT_EQ(IsRunning(), 1) << "nothing may have started";
  ULONG ms = 0;
  ULONG ls = 0;
  ScopedBstr product(kProduct);
  EXPECT_EQ(broker_->BrokerLMGetVersion(product.get(), &ms, &ls), kFailure);
}

TEST_F(BrokerAddOnMethodsLive, BadPackagesGiveTheirCodeAndLeaveNoFile) {
  const struct {
    const wchar_t* file;
    ULONG code;
  } cases[] = {
      {L"pkg-magic.p7", 6},   {L"pkg-badsig.p7", 6},  {L"pkg-altered.p7", 6},      {L"pkg-expired.p7", 6},
      {L"pkg-chain9.p7", 6},  {L"pkg-other-anchor.p7", 6}, {L"pkg-bound.p7", 3}, {L"pkg-corrupt.p7", 3},
  };
  for (const auto& c : cases) {
    const Fetched fetched = Fetch(std::wstring(L"kit/") + c.file, kProduct);
    EXPECT_EQ(fetched.opened, S_OK) << WineTest::Utf8(c.file);
    EXPECT_EQ(fetched.code, c.code) << WineTest::Utf8(c.file);
    EXPECT_FALSE(WineTest::FileExists(StoredExe())) << WineTest::Utf8(c.file);
  }
  // One byte under the bound is stored.
  EXPECT_EQ(Fetch(L"kit/pkg-edge.p7", kProduct).code, 0u);
  // A bad name: 3 for a package, 6 for a digest.
  EXPECT_EQ(Fetch(L"kit/pkg-good.p7", L"Lumen.Sample").code, 3u);
  EXPECT_EQ(Fetch(L"kit/digest-good.s", L"DIGEST#Lumen.Sample").code, 6u);
}

TEST_F(BrokerAddOnMethodsLive, ResponsesBelow400WithALengthAreAccepted) {
  const Fetched accepted = Fetch(L"status399/pkg-good.p7", kProduct);
  EXPECT_EQ(accepted.opened, S_OK);
  EXPECT_EQ(accepted.code, 0u);
  EXPECT_EQ(Fetch(L"status400/pkg-good.p7", kProduct).opened, kFailure);
  EXPECT_EQ(Fetch(L"nolength/pkg-good.p7", kProduct).opened, kFailure);
  EXPECT_EQ(Fetch(L"kit/no-such-file", kProduct).opened, kFailure);  // 404
  // Cut off half-way: the position stops, and the half-empty buffer is refused.
  const Fetched half = Fetch(L"half/pkg-good.p7", kProduct);
  EXPECT_EQ(half.opened, S_OK);
  EXPECT_EQ(half.position, half.length / 2);
  EXPECT_EQ(half.code, 6u);
  EXPECT_FALSE(WineTest::FileExists(StoredExe()));
  ULONG cookie = 0xDEAD;
  EXPECT_EQ(broker_->BrokerLMOpenDownload(nullptr, &cookie), static_cast<HRESULT>(0x80070057));
}
