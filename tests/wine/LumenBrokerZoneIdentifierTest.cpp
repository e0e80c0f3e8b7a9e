// The internet zone mark, written and read back on real files.
#include "broker/win32/LumenBrokerZoneIdentifier.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/win32/ComInitializer.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

std::wstring TempFile(const wchar_t* name) { return WineTest::TestDirectory(L"Zone\\") + name; }
// The stream as the platform keeps it; deleting it again is the test's business.
void WriteMark(const std::wstring& path, const char* text) {
  HANDLE stream = CreateFileW((path + L":Zone.Identifier").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(stream, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  WriteFile(stream, text, static_cast<DWORD>(strlen(text)), &written, nullptr);
  CloseHandle(stream);
}

uint32_t ZoneOf(const std::wstring& path) {
  ComInitializer com;
  uint32_t zone = 99;
  return LumenBrokerZoneIdentifier::ReadMark(path.c_str(), zone) ? zone : 99;
}

}  // namespace

TEST(LumenBrokerZoneIdentifier, AnUnmarkedFileIsMarkedAsFromTheInternet) {
  WineTest::TempTree tree;
  std::wstring path = TempFile(L"fresh.sol");
  tree.File(path, "data");
  EXPECT_EQ(ZoneOf(path), 99u);
  LumenBrokerZoneIdentifier().Mark(path.c_str());
  EXPECT_EQ(ZoneOf(path), 3u);
  DeleteFileW((path + L":Zone.Identifier").c_str());
}

TEST(LumenBrokerZoneIdentifier, AMarkOfAnotherZoneIsKeptButZoneZeroIsNot) {
  WineTest::TempTree tree;
  std::wstring trusted = TempFile(L"trusted.sol");
  std::wstring local = TempFile(L"local.sol");
  tree.File(trusted, "data");
  tree.File(local, "data");
  WriteMark(trusted, "[ZoneTransfer]\r\nZoneId=2\r\n");
  WriteMark(local, "[ZoneTransfer]\r\nZoneId=0\r\n");
  LumenBrokerZoneIdentifier().Mark(trusted.c_str());
  LumenBrokerZoneIdentifier().Mark(local.c_str());
  EXPECT_EQ(ZoneOf(trusted), 2u);
  EXPECT_EQ(ZoneOf(local), 3u);
  DeleteFileW((trusted + L":Zone.Identifier").c_str());
  DeleteFileW((local + L":Zone.Identifier").c_str());
}
