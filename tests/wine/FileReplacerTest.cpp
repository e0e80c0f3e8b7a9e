// Replacing files that another process holds, against the prefix's real files
// and its restart queue.
#include "install/FileReplacer.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr wchar_t kSessionManager[] = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";

// The strings of PendingFileRenameOperations, empty ones included.
std::vector<std::wstring> PendingRenames() {
  std::vector<std::wstring> strings;
  ScopedRegKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSessionManager, 0, KEY_READ, key.receive()) != ERROR_SUCCESS) return strings;
  DWORD type = 0, size = 0;
  if (RegQueryValueExW(key.get(), L"PendingFileRenameOperations", nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return strings;
  std::wstring data(size / sizeof(wchar_t), L'\0');
  RegQueryValueExW(key.get(), L"PendingFileRenameOperations", nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                   &size);
  // Pairs of source and target; the list ends at the extra terminator.
  size_t at = 0;
  while (at < data.size()) {
    size_t end = data.find(L'\0', at);
    if (end == std::wstring::npos) end = data.size();
    strings.push_back(data.substr(at, end - at));
    at = end + 1;
    if (strings.size() % 2 == 0 && (at >= data.size() || data[at] == L'\0')) break;
  }
  return strings;
}

// Takes the pairs whose source names this path out of the queue again.
void ForgetPendingRename(const std::wstring& ntPath) {
  std::vector<std::wstring> strings = PendingRenames();
  std::wstring kept;
  for (size_t i = 0; i + 1 < strings.size(); i += 2) {
    if (_wcsicmp(strings[i].c_str(), ntPath.c_str()) == 0) continue;
    kept += strings[i] + L'\0' + strings[i + 1] + L'\0';
  }
  ScopedRegKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSessionManager, 0, KEY_ALL_ACCESS, key.receive()) != ERROR_SUCCESS) return;
  if (kept.empty()) {
    RegDeleteValueW(key.get(), L"PendingFileRenameOperations");
    return;
  }
  kept += L'\0';
  RegSetValueExW(key.get(), L"PendingFileRenameOperations", 0, REG_MULTI_SZ, reinterpret_cast<const BYTE*>(kept.data()),
                 static_cast<DWORD>(kept.size() * sizeof(wchar_t)));
}

bool HasValue(const wchar_t* name) {
  ScopedRegKey key;
  return RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSessionManager, 0, KEY_READ, key.receive()) == ERROR_SUCCESS &&
         RegQueryValueExW(key.get(), name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

class FileReplacerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    hadAllowValue_ = HasValue(L"AllowProtectedRenames");
  }
  void TearDown() override {
    for (const std::wstring& path : queued_) ForgetPendingRename(L"\\??\\" + path);
    if (!hadAllowValue_) {
      ScopedRegKey key;
      if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSessionManager, 0, KEY_ALL_ACCESS, key.receive()) == ERROR_SUCCESS)
        RegDeleteValueW(key.get(), L"AllowProtectedRenames");
    }
  }
  std::wstring MakeFile(const wchar_t* name) {
    std::wstring path = directory_ + L"\\" + name;
    tree_.File(path, "player file");
    return path;
  }
  FileReplacer Replacer() { return FileReplacer(*world_.shim, world_.shim->GetPlatform()); }

  WineTest::TempTree tree_;
  std::wstring directory_ = WineTest::TestDirectory(L"Replace");
  std::vector<std::wstring> queued_;
  bool hadAllowValue_ = false;
  WineTest::HostedShim world_;
};

TEST_F(FileReplacerTest, FileHeldByAnotherProcessIsLockedAndQueuedForRestart) {
  std::wstring path = MakeFile(L"NPLumenHeld.dll");
  MString text{FromWide(path.c_str())};
  WineTest::HelperProcess holder;
  ASSERT_TRUE(holder.Hold(path));
  EXPECT_EQ(Replacer().TestFileLocked(512, text), FileReplacer::kLockedWithContent);
  queued_.push_back(path);
  EXPECT_EQ(Replacer().ReplaceFile(text, 16), 32);

  std::vector<std::wstring> renames = PendingRenames();
  bool found = false;
  for (size_t i = 0; i + 1 < renames.size(); i += 2) {
    if (renames[i] == L"\\??\\" + path) found = renames[i + 1].empty();
  }
  EXPECT_TRUE(found) << "the queue holds \\??\\path with an empty target";
  EXPECT_TRUE(HasValue(L"AllowProtectedRenames"));
  std::string line = "1015 1 " + text.ToUtf8() + " 20";
  EXPECT_EQ(WineTest::Reports(world_.host), (std::vector<std::string>{"20 0 " + text.ToUtf8(), line, line}));
}

TEST_F(FileReplacerTest, HeldFileTheHostNamedAsFreshStaysOutOfTheQueue) {
  std::wstring path = MakeFile(L"LumenUtil_Pepper.exe");
  world_.shim->AddExtraPepperFile(MString(u"LumenUtil_Pepper.exe"));
  WineTest::HelperProcess holder;
  ASSERT_TRUE(holder.Hold(path));
  size_t before = PendingRenames().size();
  EXPECT_EQ(Replacer().ReplaceFile(MString(FromWide(path.c_str())), 32768), 32);
  EXPECT_EQ(PendingRenames().size(), before);
}

}  // namespace
