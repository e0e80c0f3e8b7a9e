// RegisterProduct against the prefix's real machine hive: every key it writes
// is read back with its value names, types and data.
#include "engine/LumenBrokerShim.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "broker/BrokerRegistration.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32Registry.h"
#include "host/ReferenceHost.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using namespace WineTest;
using namespace WineTest::ProductKeys;

using Values = std::map<std::wstring, std::wstring>;

constexpr wchar_t kBrokerServer[] = L"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}\\LocalServer32";
constexpr wchar_t kExtraExecutable[] = L"LumenUtilTestsHelper.exe";

std::wstring Text(const std::wstring& text) { return L"SZ:" + text; }
std::wstring Number(DWORD value) { return L"DWORD:" + std::to_wstring(value); }

// Every value of the key in the 64-bit view, as "SZ:text" or "DWORD:n"; subkeys are counted apart.
bool ReadKey(const std::wstring& path, Values& values, DWORD& subkeys) {
  ScopedRegKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, key.receive()) != ERROR_SUCCESS)
    return false;
  RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr);
  for (DWORD index = 0;; ++index) {
    wchar_t name[256];
    BYTE data[2048];
    DWORD nameLength = 256, size = sizeof(data), type = 0;
    if (RegEnumValueW(key.get(), index, name, &nameLength, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    std::wstring shown;
    if (type == REG_SZ) shown = Text(reinterpret_cast<const wchar_t*>(data));
    else if (type == REG_DWORD) shown = Number(*reinterpret_cast<const DWORD*>(data));
    else shown = L"type " + std::to_wstring(type);
    values[std::wstring(name, nameLength)] = shown;
  }
  return true;
}

// The key's values, expecting it to exist with no subkeys.
Values KeyValues(const std::wstring& path) {
  Values values;
  DWORD subkeys = 0;
  EXPECT_TRUE(ReadKey(path, values, subkeys)) << MString(FromWide(path.c_str())).ToUtf8();
  EXPECT_EQ(subkeys, 0u) << MString(FromWide(path.c_str())).ToUtf8();
  return values;
}

class LumenBrokerShimRegistrationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = TestDirectory(L"Register");
    control_ = directory_ + L"\\LumenCtrl.ocx";
    server_ = directory_ + L"\\LumenUtil_ActiveX.exe";
    payload_ = directory_ + L"\\payload.bin";
    tree_.File(payload_, std::string(20 * 1024 + 100, 'p'));
    tree_.File(directory_ + L"\\NPLumenPlayer.dll", "plug-in");
    CopyFileW((BinaryDirectory() + L"\\lumen_test_control.dll").c_str(), control_.c_str(), FALSE);
    CopyFileW(HelperProcess::BuiltPath().c_str(), server_.c_str(), FALSE);
    CleanRegistry();

    HostOptions options;
    options.Parse({u"-release", u"-source", u"2"});
    world_ = std::make_unique<HostedShim>(u"Host { PayloadPath \"" + FromWide(payload_.c_str()) +
                                              u"\"; UtilityPath \"" + FromWide(server_.c_str()) + u"\"; }",
                                          options);
    shim_ = world_->shim.get();
    for (auto add : {&LumenBrokerShim::AddExtraActiveXFile, &LumenBrokerShim::AddExtraPluginFile,
                     &LumenBrokerShim::AddExtraPepperFile}) {
      (shim_->*add)(MString(FromWide(kExtraExecutable)));
      (shim_->*add)(MString(u"LumenCtrl.ocx"));
    }
  }

  void TearDown() override {
    world_.reset();
    CleanRegistry();
    // Protection may have left the registered files read-only.
    for (const std::wstring& path : {control_, server_}) {
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(path.c_str());
    }
  }

  static void CleanRegistry() {
    ForgetProductRegistration();
    DeleteBothViews(std::wstring(kExecutionOptions) + kExtraExecutable);
  }

  // The fourteen values of an Uninstall entry.
  Values UninstallEntry(const wchar_t* label, const wchar_t* word) const {
    return {
        {L"DisplayName", Text(std::wstring(L"Corva Lumen Player 28 ") + label + L" 64-bit")},
        {L"Publisher", Text(L"Corva Systems Incorporated")}, {L"DisplayVersion", Text(L"28.0.0.126")},
        {L"HelpLink", Text(L"https://www.halcyonics.example/go/lumenplayer_support/")},
        {L"NoModify", Number(1)}, {L"NoRepair", Number(1)}, {L"RequiresIESysFile", Text(L"4.70.0.1155")},
        {L"URLInfoAbout", Text(L"https://www.halcyonics.example/")},
        {L"URLUpdateInfo", Text(L"https://www.halcyonics.example/go/getlumenplayer/")},
        {L"VersionMajor", Number(28)}, {L"VersionMinor", Number(0)},
        {L"UninstallString", Text(server_ + L" -maintain " + word)}, {L"DisplayIcon", Text(server_)},
        {L"EstimatedSize", Number(20)},
    };
  }

  Values Inventory(const std::wstring& player) const {
    return {
        {L"Version", Text(L"28.0.0.126")},  {L"PlayerPath", Text(player)}, {L"UninstallerPath", Text(server_)},
        {L"isScriptDebugger", Number(0)}, {L"isESR", Number(0)},         {L"isMSI", Number(1)},
    };
  }

  void ExpectCommonKeys(const wchar_t* product, const wchar_t* label, const wchar_t* word,
                        const std::wstring& player) {
    EXPECT_EQ(KeyValues(std::wstring(kUninstall) + label), UninstallEntry(label, word));
    EXPECT_EQ(KeyValues(std::wstring(kProduct) + product), Inventory(player));
    EXPECT_EQ(KeyValues(std::wstring(kProduct) + product + L"ReleaseType"), (Values{{L"Release", Number(1)}}));
    EXPECT_EQ(KeyValues(std::wstring(kExecutionOptions) + kExtraExecutable),
              (Values{{L"DisableExceptionChainValidation", Number(0)}}));
  }

  MString Path(const std::wstring& path) const { return MString(FromWide(path.c_str())); }

  WineTest::TempTree tree_;
  std::wstring directory_, control_, server_, payload_;
  std::unique_ptr<HostedShim> world_;
  LumenBrokerShim* shim_ = nullptr;
};

TEST_F(LumenBrokerShimRegistrationTest, ActiveXWritesBrokerControlEntryAndInventory) {
  ASSERT_TRUE(shim_->RegisterProduct(8, Path(control_), Path(server_), MString(), 1));
  EXPECT_EQ(shim_->WasRegistrationReached(), 1);
  ExpectCommonKeys(L"ActiveX", L"ActiveX", L"activex", control_);
  EXPECT_EQ(KeyValues(kCompatibility), (Values{{L"Compatibility Flags", Number(0)}}));
  Values server;
  DWORD subkeys = 0;
  ASSERT_TRUE(ReadKey(kBrokerServer, server, subkeys));
  EXPECT_EQ(server[L""], Text(server_));
  EXPECT_FALSE(KeyExists(kPlugin));
  EXPECT_EQ(UserDword(kCounterKey, L"RegisterCalls"), 1u);
  // The files' protection isn't checked here: Wine keeps no access list for a file and
  // maps each one written onto the Unix mode, which resets the read-only attribute.
  EXPECT_EQ(Reports(world_->host), std::vector<std::string>{});
}

TEST_F(LumenBrokerShimRegistrationTest, PluginWritesItsBrowserEntryAndNoActiveXKeys) {
  std::wstring plugin = directory_ + L"\\NPLumenPlayer.dll";
  ASSERT_TRUE(shim_->RegisterProduct(16, Path(plugin), Path(server_), MString(), 1));
  ExpectCommonKeys(L"Plugin", L"NPAPI", L"plugin", plugin);
  const std::wstring product = L"Corva\u00AE Lumen\u00AE Player 28.0.0.126 Plugin";
  EXPECT_EQ(KeyValues(kPlugin), (Values{{L"Path", Text(plugin)}, {L"ProductName", Text(product)},
                                       {L"Vendor", Text(L"Corva Systems Incorporated")},
                                       {L"Description", Text(product)}, {L"Version", Text(L"28.0.0.126")}}));
  EXPECT_FALSE(KeyExists(kCompatibility));
  EXPECT_FALSE(KeyExists(kBrokerServer));
  EXPECT_EQ(Reports(world_->host), std::vector<std::string>{});
}

TEST_F(LumenBrokerShimRegistrationTest, PepperWritesTheEntryAndInventoryOnly) {
  std::wstring pepper = directory_ + L"\\pepflashplayer.dll";
  ASSERT_TRUE(shim_->RegisterProduct(32768, Path(pepper), Path(server_), MString(), 1));
  ExpectCommonKeys(L"Pepper", L"PPAPI", L"pepperplugin", pepper);
  EXPECT_FALSE(KeyExists(kPlugin));
  EXPECT_FALSE(KeyExists(kCompatibility));
  EXPECT_FALSE(KeyExists(kBrokerServer));
  EXPECT_EQ(Reports(world_->host), std::vector<std::string>{});
}

}  // namespace
