// The file seam's error numbers over real files.
#include "engine/win32/Win32FileSystem.h"

#include <gtest/gtest.h>

#include "engine/win32/WideText.h"
#include "engine/win32/WindowsApi.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

std::wstring TempDirectory() { return WineTest::TestDirectory(L"FileSystem"); }

TEST(Win32FileSystem, FileHeldWithoutSharingAnswers32AndMissingOnes2Or3) {
  WineTest::TempTree tree;
  std::wstring path = TempDirectory() + L"\\held.bin";
  tree.File(path, "12345");
  Win32FileSystem files;
  std::u16string name = FromWide(path.c_str());

  HANDLE holder = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  FileHandleId handle = 0;
  EXPECT_EQ(files.Open(name, static_cast<int32_t>(FileOpenMode::Read), handle), 32);
  EXPECT_EQ(files.Delete(name), 32);
  CloseHandle(holder);

  ASSERT_EQ(files.Open(name, static_cast<int32_t>(FileOpenMode::Append), handle), 0);
  uint64_t size = 0;
  EXPECT_EQ(files.GetSize(handle, size), 0);
  EXPECT_EQ(size, 5u);
  files.Close(handle);

  EXPECT_EQ(files.Open(FromWide((TempDirectory() + L"\\none.bin").c_str()), 4, handle), 2);
  EXPECT_EQ(files.Open(FromWide((TempDirectory() + L"\\none\\none.bin").c_str()), 4, handle), 3);
}

TEST(Win32FileSystem, ListingEndsCleanlyAndAMissingDirectoryIsReported) {
  WineTest::TempTree tree;
  tree.File(TempDirectory() + L"\\a.txt");
  tree.File(TempDirectory() + L"\\b.txt");
  Win32FileSystem files;
  std::vector<std::u16string> names;
  ASSERT_EQ(files.EnumerateDirectory(FromWide(TempDirectory().c_str()), names), 0);
  EXPECT_EQ(names.size(), 4u);
  names.clear();
  EXPECT_EQ(files.EnumerateDirectory(FromWide((TempDirectory() + L"\\gone").c_str()), names), 3);
}

}  // namespace
