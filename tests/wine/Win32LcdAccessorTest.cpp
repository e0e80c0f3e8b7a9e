// The connection directory over the real kernel objects, with a second process
// where the contract is about other participants.
#include "connections/win32/Win32LcdAccessor.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "engine/win32/ScopedHandle.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr DWORD kChildTimeoutMs = 30000;
// The longest name an empty list takes: its offset 0 plus L plus 5 reaches the list's size.
constexpr size_t kFillingNameLength = LcdSegment::kConnectionListSize - 5;

// Runs the directory's helper process to its end and gives its exit code.
DWORD RunChild(const std::wstring& arguments) {
  return WineTest::RunToEnd(L"\"" + WineTest::BinaryDirectory() + L"\\lumen_lcd_child.exe\" " + arguments,
                            kChildTimeoutMs);
}

// Whether another thread could take the directory's mutex right now.
bool MutexIsFree() {
  bool free = false;
  std::thread probe([&free] {
    ScopedHandle mutex(OpenMutexA(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, Win32LcdAccessor::kMutexName));
    if (!mutex) return;
    const DWORD wait = WaitForSingleObject(mutex.get(), 0);
    free = wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED;
    if (free) ReleaseMutex(mutex.get());
  });
  probe.join();
  return free;
}

// The directory's objects vanish with their last handle, so every test starts
// with none and must leave none behind.
class Win32LcdAccessorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(WineTest::LcdMutexExists()) << "a directory mutex is left over";
    ASSERT_FALSE(WineTest::LcdMappingExists()) << "a directory mapping is left over";
  }
  void TearDown() override {
    EXPECT_FALSE(WineTest::LcdMutexExists());
    EXPECT_FALSE(WineTest::LcdMappingExists());
  }
};

}  // namespace

TEST_F(Win32LcdAccessorTest, ConnectionAddedByAnotherProcessIsFoundHere) {
  Win32LcdAccessor lcd;
  ASSERT_TRUE(lcd.IsOpen());
  EXPECT_EQ(RunChild(L"add fromChild 1 55"), 0u);
  // 55 is '7': stored as it stands and read back as a digit.
  EXPECT_EQ(lcd.FindConnectionFormat("fromChild", 1), 7);
  EXPECT_EQ(lcd.FindConnectionFormat("fromChild", 0), 0);
  // The name outlives the process that listed it.
  EXPECT_FALSE(lcd.TryAddConnection("fromChild", 1, 1, '7'));
}

TEST_F(Win32LcdAccessorTest, ExistingSegmentOfAnotherLayoutIsRefusedAndBothObjectsClosed) {
  ScopedHandle mapping(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                          static_cast<DWORD>(kLcdSegmentSize), Win32LcdAccessor::kMappingName));
  ASSERT_TRUE(mapping.valid());
  auto* segment = static_cast<LcdSegment*>(MapViewOfFile(mapping.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0));
  ASSERT_NE(segment, nullptr);
  segment->layoutVersion = 2;
  std::memcpy(segment->connectionList, "alpha\0::4\0::1\0", 15);

  Win32LcdAccessor lcd;
  EXPECT_FALSE(lcd.IsOpen());
  EXPECT_EQ(lcd.Lock(), 0);
  EXPECT_EQ(lcd.FindConnectionFormat("alpha", 0), 0);
  EXPECT_FALSE(lcd.TryAddConnection("beta", 0, 0, '4'));
  EXPECT_EQ(segment->layoutVersion, 2u);
  EXPECT_EQ(segment->connectionList[15], 0) << "nothing was written";

  UnmapViewOfFile(segment);
  mapping.reset();
  // Only the accessor could keep them alive now.
  EXPECT_FALSE(WineTest::LcdMappingExists());
  EXPECT_FALSE(WineTest::LcdMutexExists());
}

TEST_F(Win32LcdAccessorTest, NameThatExactlyFillsTheListWritesIntoThePageRoundedView) {
  Win32LcdAccessor lcd;
  ASSERT_TRUE(lcd.IsOpen());
  const std::string filling(kFillingNameLength, 'n');
  ASSERT_TRUE(lcd.TryAddConnection(filling.c_str(), 0, 0, '2'));

  // The mapping was asked for 0xFC10 bytes; the pages behind it take the overrun.
  ScopedHandle mapping(OpenFileMappingA(FILE_MAP_READ, FALSE, Win32LcdAccessor::kMappingName));
  ASSERT_TRUE(mapping.valid());
  ScopedMappedView view(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
  ASSERT_NE(view.get(), nullptr);
  const auto* bytes = static_cast<const uint8_t*>(view.get());
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes + kLcdSegmentSize), kLcdListOverrun),
            std::string("::1\0\0", 5));
  EXPECT_TRUE(lcd.RemoveConnection(filling.c_str(), 0));
}

TEST_F(Win32LcdAccessorTest, MutexAbandonedByAnExitedHolderFailsTheLockYetKeepsItsOwnership) {
  Win32LcdAccessor lcd;
  ASSERT_TRUE(lcd.IsOpen());
  ASSERT_TRUE(lcd.TryAddConnection("survivor", 0, 0, '3'));
  ASSERT_EQ(RunChild(L"hold"), 0u);

  EXPECT_EQ(lcd.Lock(), 0);
  EXPECT_FALSE(MutexIsFree()) << "the abandoned mutex now belongs to this thread";
  // The abandonment is told once; the next hold nests on the kept ownership and succeeds.
  EXPECT_EQ(lcd.FindConnectionFormat("survivor", 0), 3);

  ScopedHandle mutex(OpenMutexA(MUTEX_MODIFY_STATE, FALSE, Win32LcdAccessor::kMutexName));
  ASSERT_TRUE(mutex.valid());
  EXPECT_TRUE(ReleaseMutex(mutex.get()));
  EXPECT_TRUE(MutexIsFree());
}
