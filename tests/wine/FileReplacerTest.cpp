// Replacing files that another process holds, against the prefix's real files
// and its restart queue.
#include "install/FileReplacer.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

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

// A value of the session manager, raw; false when absent.
bool ReadValue(const wchar_t* name, DWORD& type, std::string& bytes) {
  DWORD size = 0;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, kSessionManager, name, RRF_RT_ANY, &type, nullptr, &size) != ERROR_SUCCESS)
    return false;
  bytes.resize(size);
  return RegGetValueW(HKEY_LOCAL_MACHINE, kSessionManager, name, RRF_RT_ANY, &type, bytes.data(), &size) ==
         ERROR_SUCCESS;
}

// Keeps a value of the session manager as it was and puts it back when the test ends.
class SavedValue {
 public:
  explicit SavedValue(const wchar_t* name) : name_(name) { present_ = ReadValue(name, type_, bytes_); }
  ~SavedValue() {
    ScopedRegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSessionManager, 0, KEY_SET_VALUE, key.receive()) != ERROR_SUCCESS) return;
    if (!present_) RegDeleteValueW(key.get(), name_);
    else RegSetValueExW(key.get(), name_, 0, type_, reinterpret_cast<const BYTE*>(bytes_.data()),
                        static_cast<DWORD>(bytes_.size()));
  }

 private:
  const wchar_t* name_;
  bool present_ = false;
  DWORD type_ = 0;
  std::string bytes_;
};

TEST(FileReplacerTest, FileHeldByAnotherProcessIsLockedAndQueuedForRestart) {
  SavedValue renames(L"PendingFileRenameOperations"), allow(L"AllowProtectedRenames");
  WineTest::HostedShim world;
  WineTest::TempTree tree;
  std::wstring path = WineTest::TestDirectory(L"Replace\\NPLumenHeld.dll");
  tree.File(path, "player file");
  MString text{FromWide(path.c_str())};
  WineTest::HelperProcess holder;
  ASSERT_TRUE(holder.Hold(path));
  FileReplacer replacer(*world.shim, world.shim->GetPlatform());
  EXPECT_EQ(replacer.TestFileLocked(512, text), FileReplacer::kLockedWithContent);
  EXPECT_EQ(replacer.ReplaceFile(text, 16), 32);

  DWORD type = 0;
  std::string queue, unused;
  ASSERT_TRUE(ReadValue(L"PendingFileRenameOperations", type, queue));
  const std::wstring entry = L"\\??\\" + path + std::wstring(2, L'\0');  // an empty target: delete at restart
  EXPECT_NE(std::wstring(reinterpret_cast<const wchar_t*>(queue.data()), queue.size() / 2).find(entry),
            std::wstring::npos);
  EXPECT_TRUE(ReadValue(L"AllowProtectedRenames", type, unused));
  std::string line = "1015 1 " + text.ToUtf8() + " 20";
  EXPECT_EQ(WineTest::Reports(world.host), (std::vector<std::string>{"20 0 " + text.ToUtf8(), line, line}));
}

}  // namespace
