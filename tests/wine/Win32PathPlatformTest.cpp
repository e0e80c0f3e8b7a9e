// The path policy's platform over the real calls, and the policy over it.
#include "broker/win32/Win32PathPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr uint32_t kGetReparsePoint = 0x900A8;  // FSCTL_GET_REPARSE_POINT
constexpr uint32_t kObjCaseInsensitive = 64;

TEST(Win32PathPlatform, FullPathKeepsTheBufferConventionsAndTheDriveIsALinkToADevice) {
  Win32PathPlatform platform;
  std::u16string full = u"untouched";
  EXPECT_EQ(platform.GetFullPathName(u"C:\\a\\..\\b\\c.txt", 260, full), 10u);
  EXPECT_EQ(full, u"C:\\b\\c.txt");
  // Too small: the size needed, terminator included, and nothing stored.
  full = u"untouched";
  EXPECT_EQ(platform.GetFullPathName(u"C:\\b\\c.txt", 5, full), 11u);
  EXPECT_EQ(full, u"untouched");

  // The drive is a link object with a device target.
  PathPlatform::Handle link = nullptr;
  ASSERT_TRUE(platform.OpenSymbolicLinkObject(u"\\??\\c:", 0xF0001, kObjCaseInsensitive, link));
  std::u16string target;
  EXPECT_TRUE(platform.QuerySymbolicLinkObject(link, 0x104, target));
  EXPECT_EQ(target.rfind(u"\\Device\\", 0), 0u) << MString(target).ToUtf8();
  platform.CloseHandle(link);
  EXPECT_FALSE(platform.OpenSymbolicLinkObject(u"\\??\\NoSuchLinkAnywhere", 0xF0001, kObjCaseInsensitive, link));
}

TEST(Win32PathPlatform, PlainDirectoryHasNoReparseData) {
  Win32PathPlatform platform;
  std::u16string directory = FromWide(WineTest::SystemDirectory().c_str());
  uint32_t attributes = 0;
  ASSERT_TRUE(platform.GetFileAttributesEx(directory.c_str(), attributes));
  EXPECT_TRUE(attributes & PathAttribute::kDirectory);
  EXPECT_EQ(platform.GetFileAttributes(u"C:\\no\\such\\thing"), PathAttribute::kInvalid);
  PathPlatform::Handle file = nullptr;
  ASSERT_TRUE(platform.CreateFile(directory.c_str(), 0, 0, 3, 0x2200000, file));
  std::vector<uint8_t> data(0x4000);
  uint32_t returned = 0;
  EXPECT_FALSE(platform.DeviceIoControl(file, kGetReparsePoint, data, returned));
  platform.CloseHandle(file);
}

}  // namespace
