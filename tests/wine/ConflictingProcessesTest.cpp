// The conflict search over the prefix's real processes, through the shim.
#include "removal/ConflictingProcesses.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

const std::wstring kPluginKey = std::wstring(WineTest::ProductKeys::kProduct) + L"Plugin";

std::wstring Unique(const wchar_t* stem, const wchar_t* extension) {
  return stem + std::to_wstring(GetCurrentProcessId()) + extension;
}

// Registers a player file as the installed NPAPI kind. The key goes with the
// object, as the other suites of this prefix remove the product's keys too.
struct InstalledPlugin {
  explicit InstalledPlugin(const std::wstring& playerPath) {
    for (auto [name, text] : {std::pair(L"PlayerPath", playerPath), std::pair(L"UninstallerPath", kUninstaller)})
      RegSetKeyValueW(HKEY_LOCAL_MACHINE, kPluginKey.c_str(), name, REG_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  ~InstalledPlugin() { WineTest::DeleteBothViews(kPluginKey); }
  inline static const std::wstring kUninstaller = L"C:\\Lumen\\LumenUtil_Plugin.exe";
};

class ConflictingProcessesTest : public ::testing::Test {
 protected:
  std::wstring Copy(const std::wstring& from, const std::wstring& name) {
    std::wstring to = WineTest::TestDirectory(L"Conflicts\\") + name;
    EXPECT_TRUE(tree_.Copy(from, to));
    return to;
  }

  LumenBrokerShim& Start(const std::wstring& settings) {
    world_ = std::make_unique<WineTest::HostedShim>(FromWide(settings.c_str()));
    return *world_->shim;
  }

  // "key=shown" of the entry with this key, or empty.
  static std::string EntryOf(const MStringList& list, const std::wstring& key) {
    for (auto* node = list.head; node; node = node->next) {
      if (node->key.View() == FromWide(key.c_str())) return node->key.ToUtf8() + "=" + node->value.ToUtf8();
    }
    return "";
  }

  WineTest::TempTree tree_;
  std::unique_ptr<WineTest::HostedShim> world_;
};

TEST_F(ConflictingProcessesTest, AProgramHoldingTheInstalledPlayerIsFoundByItsModulesAndShownByItsFriendlyName) {
  std::wstring player = Copy(WineTest::BinaryDirectory() + L"\\lumen_test_control.dll", Unique(L"NPLumen-", L".dll"));
  InstalledPlugin installed(player);
  LumenBrokerShim& shim =
      Start(L"FriendlyProcessNames { lumen_process_helper \"Player Host\"; }; Host { ConflictCheckIsOptional 0; }");
  WineTest::HelperProcess holder;
  ASSERT_TRUE(holder.Load(player));
  std::unique_ptr<MStringList> found(shim.FindConflicts(16));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(EntryOf(*found, L"lumen_process_helper"), "lumen_process_helper=Player Host");
}

TEST_F(ConflictingProcessesTest, ARunningBrowserIsFoundByItsFullPath) {
  std::wstring browser = Copy(WineTest::HelperProcess::BuiltPath(), L"seamonkey.exe");
  LumenBrokerShim& shim = Start(L"");
  {
    WineTest::HelperProcess running;
    ASSERT_TRUE(running.Run(browser));
    EXPECT_TRUE(shim.FindDefaultBrowser());
    EXPECT_EQ(WineTest::Lower(ToWide(shim.browserName.View())), WineTest::Lower(browser));
  }
  EXPECT_FALSE(shim.FindDefaultBrowser()) << "no browser runs any more";
}

TEST_F(ConflictingProcessesTest, TheActiveXHelperIsEndedButNotListed) {
  std::wstring helperName = Unique(L"LumenHelper-", L".exe");
  std::wstring helper = Copy(WineTest::HelperProcess::BuiltPath(), helperName);
  LumenBrokerShim& shim = Start(L"Host { ActiveXFiles LumenCtrl.ocx " + helperName +
                                L"; PayloadPath \"C:\\Setup\\payload.exe\"; }");
  WineTest::HelperProcess running;
  ASSERT_TRUE(running.Run(helper));
  ScopedHandle process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, running.Id()));
  std::unique_ptr<MStringList> found(shim.FindConflicts(8));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(EntryOf(*found, WineTest::Lower(helperName.substr(0, helperName.size() - 4))), "");
  ASSERT_EQ(WaitForSingleObject(process.get(), 10000), WAIT_OBJECT_0);
  DWORD code = 1;
  GetExitCodeProcess(process.get(), &code);
  EXPECT_EQ(code, 0u);
}

}  // namespace
