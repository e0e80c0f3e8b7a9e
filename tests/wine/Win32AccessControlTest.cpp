// Grants on real files and keys of the prefix, read back with the system's own calls.
#include "engine/win32/Win32AccessControl.h"

#include "engine/win32/WindowsApi.h"

#include <aclapi.h>
#include <gtest/gtest.h>

#include <string>

#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr uint32_t kReadExecute = 0x1200A9;

// The explicit entries of the object's list that allow the Users account exactly this mask.
int UsersGrants(const std::wstring& name, SE_OBJECT_TYPE type, uint32_t mask) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(name.c_str(), type, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                            &descriptor) != ERROR_SUCCESS)
    return -1;
  SID_IDENTIFIER_AUTHORITY nt = SECURITY_NT_AUTHORITY;
  PSID users = nullptr;
  AllocateAndInitializeSid(&nt, 2, 32, 545, 0, 0, 0, 0, 0, 0, &users);
  int grants = 0;
  for (DWORD i = 0; list && i < list->AceCount; ++i) {
    ACCESS_ALLOWED_ACE* entry = nullptr;
    GetAce(list, i, reinterpret_cast<void**>(&entry));
    grants += !(entry->Header.AceFlags & INHERITED_ACE) && entry->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
              entry->Mask == mask && EqualSid(&entry->SidStart, users);
  }
  FreeSid(users);
  LocalFree(descriptor);
  return grants;
}

class Win32AccessControlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = WineTest::TestDirectory(L"Access\\protected.dll");
    tree_.File(path_, "library");
  }

  Win32AccessControl access_;
  WineTest::TempTree tree_;
  std::wstring path_;
};

TEST_F(Win32AccessControlTest, KeyGrantByRootWordNameIsAddedAndTakenAway) {
  const wchar_t kKey[] = L"Software\\LumenUtilTests\\Access";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  RegCloseKey(key);
  std::wstring name = std::wstring(L"CURRENT_USER\\") + kKey;
  EXPECT_EQ(access_.EnsureAccess(FromWide(name.c_str()), 4, 27, KEY_READ), 0);
  EXPECT_EQ(UsersGrants(name, SE_REGISTRY_KEY, KEY_READ), 1);
  // A key's grant is merged in each time; Wine appends a second entry where Windows would merge.
  EXPECT_EQ(access_.EnsureAccess(FromWide(name.c_str()), 4, 27, KEY_READ), 0);
  EXPECT_GE(UsersGrants(name, SE_REGISTRY_KEY, KEY_READ), 1);
  EXPECT_EQ(access_.RemoveAccess(FromWide(name.c_str()), 4, 27, KEY_READ), 0);
  EXPECT_EQ(UsersGrants(name, SE_REGISTRY_KEY, KEY_READ), 0) << "every explicit grant of that mask goes";
  RegDeleteKeyW(HKEY_CURRENT_USER, kKey);
}

// Wine keeps no access list for files here (it maps one onto the Unix mode), so a
// file shows only that the calls succeed; keys keep theirs.
TEST_F(Win32AccessControlTest, FileGrantSucceedsAndMissingObjectsAndUnknownAccountsFail) {
  EXPECT_EQ(access_.EnsureAccess(FromWide(path_.c_str()), 1, 27, kReadExecute), 0);
  EXPECT_EQ(access_.RemoveAccess(FromWide(path_.c_str()), 1, 27, kReadExecute), 0);
  EXPECT_EQ(access_.EnsureAccess(u"C:\\no\\such\\file.dll", 1, 27, kReadExecute), 3);
  EXPECT_EQ(access_.EnsureAccess(FromWide(path_.c_str()), 1, 99, kReadExecute), 87);
}

}  // namespace
