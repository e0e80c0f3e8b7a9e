#include "connections/CoreLcdAccessor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace std::string_literals;
using SASM::CoreLcdAccessor;
using SASM::kLcdBlockSize;
using SASM::kLcdSegmentSize;
using SASM::LcdSegment;

namespace {

class TestLcdAccessor : public CoreLcdAccessor {
 public:
  int32_t Lock() override {
    if (locksLeft == 0) return lockFailure;
    if (locksLeft > 0) --locksLeft;
    return ++holds;
  }
  int32_t Unlock() override { ++unlocks; return --holds; }
  uint32_t LockTime() override { return tick; }
  int32_t MessageTimeout() override { return 5000; }

  int32_t locksLeft = -1;  // successful locks before Lock fails; -1 never fails
  int32_t lockFailure = 0;
  int32_t holds = 0, unlocks = 0;
  uint32_t tick = 0;
};

// The block is allocated at exactly the size an accessor may touch, so ASan
// reports any byte beyond it.
class CoreLcd : public ::testing::Test {
 protected:
  CoreLcd() : block_(new uint8_t[kLcdBlockSize]) {
    std::memset(block_.get(), 0xCD, kLcdBlockSize);
    lcd.AttachSegment(segment(), true);
  }
  LcdSegment* segment() { return reinterpret_cast<LcdSegment*>(block_.get()); }
  uint8_t* list() { return segment()->connectionList; }
  std::string List(size_t n) { return std::string(reinterpret_cast<char*>(list()), n); }
  void SetList(const std::string& bytes) { std::memcpy(list(), bytes.data(), bytes.size()); }
  void Place(const std::string& message, uint32_t stamp = 0) {
    std::memcpy(segment()->messageArea, message.data(), message.size());
    segment()->messageSize = static_cast<uint32_t>(message.size());
    segment()->messageTime = stamp;
  }
  int32_t Dispatch(const std::string& m, int32_t version = 11, int32_t expected = 3, uint32_t realm = 0) {
    return lcd.DispatchMessage(m.data(), static_cast<int32_t>(m.size()), version, expected, realm);
  }
  std::string Target(uint32_t size = 1024) {
    std::vector<char> out(std::min<uint32_t>(size, 4096) + 1);  // a larger size is a lie ASan would catch
    return lcd.GetMessageTarget(out.data(), size) ? out.data() : "<none>";
  }
  static std::string To(const std::string& name) { return "\x02\x00"s + char(name.size()) + name + "payload"; }

  std::unique_ptr<uint8_t[]> block_;
  TestLcdAccessor lcd;
};

using CoreLcdConnections = CoreLcd;
using CoreLcdMessages = CoreLcd;
using CoreLcdPrune = CoreLcd;
using CoreLcdLocking = CoreLcd;

}  // namespace

TEST_F(CoreLcd, AttachInitialisesOnlyTheHeaderAndTheListTerminator) {
  EXPECT_EQ(segment()->layoutVersion, 1u);
  EXPECT_EQ(segment()->secondMark, 1u);
  EXPECT_EQ(list()[0], 0);
  EXPECT_EQ(list()[1], 0xCD);
  EXPECT_EQ(segment()->messageArea[0], 0xCD);
  EXPECT_TRUE(lcd.IsSegmentValid());
  segment()->layoutVersion = 2;
  EXPECT_FALSE(lcd.IsSegmentValid());
}

TEST_F(CoreLcdConnections, FirstAddWritesBothSuffixesAtTheListStart) {
  EXPECT_EQ(lcd.FindConnection("a", 0), block_.get() + 40976);
  EXPECT_TRUE(lcd.TryAddConnection("a", 0, 0, 0x135));
  EXPECT_EQ(List(11), "a\0::5\0::1\0\0"s);
  EXPECT_EQ(lcd.FindConnectionFormat("a", 0), 5);
  EXPECT_EQ(lcd.FindConnectionFormat("b", 0), 0);
}

TEST_F(CoreLcdConnections, RealmFamiliesZeroTwoAndOneNeverSeeEachOther) {
  ASSERT_TRUE(lcd.TryAddConnection("a", 0, 0, '4'));
  EXPECT_EQ(lcd.FindConnectionFormat("a", 2), 4);
  EXPECT_EQ(lcd.FindConnectionFormat("a", 1), 0);
  EXPECT_FALSE(lcd.TryAddConnection("a", 2, 1, '4'));
  EXPECT_TRUE(lcd.TryAddConnection("a", 1, 1, '6'));
  EXPECT_EQ(lcd.FindConnectionFormat("a", 3), 4);  // the wildcard meets the first entry

  EXPECT_TRUE(lcd.RemoveConnection("a", 3));
  EXPECT_EQ(lcd.FindConnectionFormat("a", 0), 0);
  EXPECT_EQ(lcd.FindConnectionFormat("a", 1), 6);
  EXPECT_TRUE(lcd.RemoveConnection("a", 3));
  EXPECT_FALSE(lcd.RemoveConnection("a", 3));
  EXPECT_EQ(list()[0], 0);
}

TEST_F(CoreLcdConnections, RealmByteDecidesTheMatchByTable) {
  // Entry realm byte, then whether realms 0, 1, 2, 3 and 7 find it.
  const struct { char realmByte; const char* seen; } rows[] = {
      {'1', "10111"}, {'3', "10111"}, {'2', "01011"}, {'0', "11111"}, {'9', "11111"}};
  const uint32_t realms[] = {0, 1, 2, 3, 7};
  for (const auto& row : rows) {
    SetList("n\0::2\0::"s + row.realmByte + "\0\0"s);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(lcd.FindConnectionFormat("n", realms[i]) == 2, row.seen[i] == '1') << row.realmByte << i;
    }
  }
}

TEST_F(CoreLcdConnections, EntriesOfOtherWritersWithoutSuffixesMatchEveryRealm) {
  SetList("a\0b\0::7\0\0"s);
  EXPECT_EQ(lcd.FindConnectionFormat("a", 1), 1);  // no format suffix counts as 1
  EXPECT_EQ(lcd.FindConnectionFormat("b", 0), 7);
  EXPECT_EQ(lcd.FindConnectionFormat("b", 1), 7);
}

TEST_F(CoreLcdConnections, FormatByteIsStoredRawButReadAsADigit) {
  ASSERT_TRUE(lcd.TryAddConnection("d", 0, 0x101, 0x32));
  ASSERT_TRUE(lcd.TryAddConnection("p", 0, 2, 2));
  ASSERT_TRUE(lcd.TryAddConnection("h", 0, 0, 0xF0));
  EXPECT_EQ(List(10), "d\0::2\0::2\0"s);
  EXPECT_EQ(lcd.FindConnectionFormat("d", 1), 2);
  EXPECT_EQ(lcd.FindConnectionFormat("p", 0), -46);
  EXPECT_EQ(lcd.FindConnectionFormat("h", 0), -64);  // signed byte
}

TEST_F(CoreLcdConnections, EmptyNameIsNeverFoundYetItsAddSucceedsAndASuffixSpellingMatchesInsideAnEntry) {
  EXPECT_TRUE(lcd.TryAddConnection("", 0, 0, '1'));
  EXPECT_EQ(list()[0], 0);
  EXPECT_EQ(lcd.FindConnectionFormat("", 3), 0);
  EXPECT_FALSE(lcd.RemoveConnection("", 3));

  ASSERT_TRUE(lcd.TryAddConnection("a", 0, 0, '7'));
  EXPECT_EQ(lcd.FindConnection("::7", 0), list() + 2);
  EXPECT_FALSE(lcd.TryAddConnection("::7", 0, 0, '1'));
}

TEST_F(CoreLcdConnections, RemoveTakesAtMostTwoFourByteSuffixesAndKeepsTheTail) {
  SetList("a\0::1\0::2\0::3\0b\0\0"s);
  EXPECT_TRUE(lcd.RemoveConnection("a", 1));
  EXPECT_EQ(List(18), "::3\0b\0\0"s + ":2\0::3\0b\0\0"s + "\xCD"s);
  SetList("a\0:x\0b\0\0"s);
  EXPECT_TRUE(lcd.RemoveConnection("a", 0));
  EXPECT_EQ(List(6), ":x\0b\0\0"s);  // one colon is no suffix
}

TEST_F(CoreLcdConnections, NameThatExactlyFillsTheLimitWritesFivePastTheSegment) {
  const std::string longest(LcdSegment::kConnectionListSize - 5, 'n');
  EXPECT_FALSE(lcd.TryAddConnection((longest + "n").c_str(), 0, 0, '1'));
  EXPECT_EQ(list()[0], 0);
  ASSERT_TRUE(lcd.TryAddConnection(longest.c_str(), 0, 0, '1'));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(block_.get()) + kLcdSegmentSize, 5), "::1\0\0"s);
  EXPECT_FALSE(lcd.TryAddConnection("b", 0, 0, '1'));
  EXPECT_EQ(lcd.FindConnectionFormat(longest.c_str(), 0), 1);
  EXPECT_TRUE(lcd.RemoveConnection(longest.c_str(), 0));
  EXPECT_EQ(list()[0], 0);
}

TEST_F(CoreLcdConnections, ListWithoutTerminatorIsNeverWalkedOutOfTheBlock) {
  std::memset(list(), 'z', kLcdBlockSize - offsetof(LcdSegment, connectionList));
  EXPECT_EQ(lcd.FindConnection("z", 0), nullptr);
  EXPECT_FALSE(lcd.TryAddConnection("a", 0, 0, '1'));
  EXPECT_FALSE(lcd.RemoveConnection("z", 3));
}

TEST_F(CoreLcdMessages, TargetReadsBothEncodingsWithBigEndianLengths) {
  const std::string name(258, 'q');
  Place("\x02\x01\x02"s + name);
  EXPECT_EQ(Target(), name);
  Place("\x0C\x00\x00\x00\x02xy!"s);
  EXPECT_EQ(Target(), "xy");
  EXPECT_EQ(Target(3), "xy");  // name and NUL fill the buffer exactly
  EXPECT_EQ(Target(2), "<none>");
  segment()->messageSize = 0x80000000;  // unsigned: large, not negative
  EXPECT_EQ(Target(), "xy");
  Place("\x0C\xFF\xFF\xFF\xFF"s);
  EXPECT_EQ(Target(0xFFFFFFFF), "<none>");
  Place("\x0C\xFF\xFF\xFF\xFE"s);  // the sums wrap; the read must still stay inside
  std::vector<char> out(8);
  EXPECT_FALSE(lcd.GetMessageTarget(out.data(), 0xFFFFFFFF));
  Place("\x07\x00\x01z"s);
  EXPECT_EQ(Target(), "<none>");
}

TEST_F(CoreLcdMessages, DispatchStampsThePostAndRefusesABusySlot) {
  ASSERT_TRUE(lcd.TryAddConnection("rx", 0, 0, '3'));
  lcd.tick = 777;
  const std::string message = To("rx");
  EXPECT_EQ(Dispatch(message), 1);
  EXPECT_EQ(segment()->messageTime, 777u);
  const uint8_t* data = nullptr;
  int32_t size = 0;
  ASSERT_TRUE(lcd.GetMessageData(&data, &size));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), size), message);
  EXPECT_EQ(Dispatch(To("other")), 0);
  EXPECT_EQ(segment()->messageSize, message.size());
  EXPECT_TRUE(lcd.ClearMessage());
  EXPECT_FALSE(lcd.GetMessageData(&data, &size));
}

TEST_F(CoreLcdMessages, DispatchResultDependsOnTargetFormatAndSenderVersion) {
  ASSERT_TRUE(lcd.TryAddConnection("rx", 0, 0, '3'));
  ASSERT_TRUE(lcd.TryAddConnection("one", 0, 1, '3'));
  const struct { std::string message; int32_t version, expected, result; uint32_t sizeAfter; } rows[] = {
      {To("rx"), 11, 3, 1, 12}, {To("rx"), 8, 4, 1, 12}, {To("rx"), 9, 4, 2, 12}, {To("rx"), 10, 4, 2, 12},
      {To("rx"), 11, 4, 2, 0},  {To("none"), 8, 3, 2, 0},
      {To("one"), 11, 3, 2, 0},  // listed only in the other realm family
      {"\x02"s, 11, 3, 1, 1},     {"\x07\x00\x01z"s, 11, 3, 1, 4},  // no readable target: posted and kept
      {"", 11, 3, 1, 0},         // posted, yet the slot stays free
  };
  lcd.tick = 42;
  for (const auto& row : rows) {
    lcd.ClearMessage();
    EXPECT_EQ(Dispatch(row.message, row.version, row.expected), row.result) << row.message << row.version;
    EXPECT_EQ(segment()->messageSize, row.sizeAfter) << row.message << row.version;
  }
  EXPECT_EQ(segment()->messageTime, 42u);
}

TEST_F(CoreLcdMessages, OversizedDispatchNeverWritesPastTheMessageArea) {
  const std::vector<uint8_t> huge(50000, 0xEE);
  EXPECT_EQ(lcd.DispatchMessage(huge.data(), 50000, 11, 3, 0), 1);
  EXPECT_EQ(segment()->messageSize, 50000u);
  EXPECT_EQ(list()[0], 0);
  const uint8_t* data = nullptr;
  int32_t size = 0;
  ASSERT_TRUE(lcd.GetMessageData(&data, &size));
  EXPECT_EQ(size, 40960);
  lcd.ClearMessage();
  EXPECT_EQ(lcd.DispatchMessage(nullptr, -1, 11, 3, 0), 1);
  EXPECT_FALSE(lcd.GetMessageData(&data, &size));  // negative size: no message
}

TEST_F(CoreLcdPrune, MessageOlderThanTheTimeoutTakesItsTargetInEveryRealm) {
  ASSERT_TRUE(lcd.TryAddConnection("t", 0, 0, '1'));
  ASSERT_TRUE(lcd.TryAddConnection("keep", 0, 0, '1'));
  ASSERT_TRUE(lcd.TryAddConnection("t", 1, 1, '1'));
  lcd.tick = 10000;
  ASSERT_EQ(Dispatch(To("t"), 8, 1), 1);
  lcd.tick = 15000;
  EXPECT_FALSE(lcd.PruneDeadMessage());
  lcd.tick = 15001;
  EXPECT_TRUE(lcd.PruneDeadMessage());
  EXPECT_EQ(segment()->messageSize, 0u);
  EXPECT_EQ(lcd.FindConnectionFormat("t", 3), 0);
  EXPECT_EQ(lcd.FindConnectionFormat("keep", 0), 1);
  EXPECT_FALSE(lcd.PruneDeadMessage());  // free slot
}

TEST_F(CoreLcdPrune, AgeIsSignedSoFutureStampsLiveAndWrapIsHarmless) {
  Place(To("t"), 20000);
  lcd.tick = 10000;
  EXPECT_FALSE(lcd.PruneDeadMessage());
  Place(To("t"), 0xFFFFF000);
  lcd.tick = 904;  // 5,000 ms later across the wrap
  EXPECT_FALSE(lcd.PruneDeadMessage());
  lcd.tick = 905;
  EXPECT_TRUE(lcd.PruneDeadMessage());
}

TEST_F(CoreLcdPrune, UnreadableTargetIsClearedAndRemovesNothing) {
  ASSERT_TRUE(lcd.TryAddConnection("t", 0, 0, '1'));
  Place("\x07\x00\x01t"s, 0);
  lcd.tick = 9000;
  EXPECT_TRUE(lcd.PruneDeadMessage());
  EXPECT_EQ(segment()->messageSize, 0u);
  EXPECT_EQ(lcd.FindConnectionFormat("t", 0), 1);
}

// Lists as a hostile writer might leave them: entries of the target with and without
// suffixes, broken suffixes, format bytes of 0, stray colons, other names, bytes after
// the terminator, and now and then no terminator at all.
std::vector<uint8_t> RandomBlock(std::mt19937& random) {
  // The bytes around the list repeat a short random pattern.
  uint8_t pattern[61];
  for (uint8_t& byte : pattern) byte = "t:\0x1"[random() % 5];
  std::vector<uint8_t> block(kLcdBlockSize);
  for (size_t i = 0; i < block.size(); ++i) block[i] = pattern[i % sizeof pattern];
  auto pick = [&](std::initializer_list<const char*> pieces, std::initializer_list<size_t> sizes) {
    size_t i = random() % pieces.size();
    return std::string(pieces.begin()[i], sizes.begin()[i]);
  };
  std::string list;
  const size_t entries = random() % 400;
  for (size_t i = 0; i < entries; ++i) {
    list += pick({"t\0", "tt\0", "x\0", "t\0::1\0::1\0", "t\0::\0\0", "t\0::AB\0", "t\0::1\0::\0\0", "::\0", "t"},
                 {2, 3, 2, 10, 5, 6, 9, 3, 1});
  }
  if (random() % 8 != 0) list += std::string("\0\0", 2);
  std::memcpy(block.data() + offsetof(LcdSegment, connectionList), list.data(),
              std::min(list.size(), block.size() - offsetof(LcdSegment, connectionList)));
  if (random() % 16 == 0) std::memset(block.data() + offsetof(LcdSegment, connectionList), 'x', LcdSegment::kConnectionListSize);
  return block;
}

TEST(CoreLcdPruneOnePass, LeavesTheBlockExactlyAsRemovingOneEntryAtATimeDoes) {
  std::mt19937 random(20261124);
  for (int round = 0; round < 400; ++round) {
    const std::vector<uint8_t> original = RandomBlock(random);
    const size_t limit = random() % 4 == 0 ? random() % 20 : LcdSegment::kConnectionListSize;
    std::vector<uint8_t> stepwise = original, onePass = original;
    TestLcdAccessor a, b;
    a.AttachSegment(reinterpret_cast<LcdSegment*>(stepwise.data()), false);
    b.AttachSegment(reinterpret_cast<LcdSegment*>(onePass.data()), false);
    size_t steps = 0;
    while (steps < limit && a.RemoveConnection("t", 3)) ++steps;
    ASSERT_EQ(b.RemoveEveryConnection("t", limit), steps) << "round " << round;
    ASSERT_TRUE(stepwise == onePass) << "round " << round;
  }
}

TEST(CoreLcdPruneOnePass, AListFullOfOneNameIsEmptiedWithTheBlockOtherwiseUntouched) {
  std::vector<uint8_t> block(kLcdBlockSize, 0xCD);
  uint8_t* list = block.data() + offsetof(LcdSegment, connectionList);
  size_t n = 0;
  for (; (n + 1) * 2 < LcdSegment::kConnectionListSize; ++n) std::memcpy(list + n * 2, "t", 2);
  list[n * 2] = 0;
  TestLcdAccessor lcd;
  lcd.AttachSegment(reinterpret_cast<LcdSegment*>(block.data()), false);
  EXPECT_EQ(lcd.RemoveEveryConnection("t", LcdSegment::kConnectionListSize), n);
  EXPECT_EQ(list[0], 0);
  EXPECT_EQ(block.back(), 0xCD);
}

TEST_F(CoreLcdLocking, EveryOperationFailsUntouchedWithoutTheLock) {
  ASSERT_TRUE(lcd.TryAddConnection("t", 0, 0, '1'));
  Place(To("t"), 0);
  lcd.tick = 9000;
  const uint32_t busy = segment()->messageSize;
  const std::vector<uint8_t> before(block_.get(), block_.get() + kLcdBlockSize);
  const int32_t unlocks = lcd.unlocks;
  lcd.locksLeft = 0;
  lcd.lockFailure = -1;
  char out[16];
  const uint8_t* data = reinterpret_cast<const uint8_t*>(out);
  int32_t size = 77;
  EXPECT_EQ(lcd.FindConnectionFormat("t", 0), 0);
  EXPECT_FALSE(lcd.RemoveConnection("t", 0));
  EXPECT_FALSE(lcd.TryAddConnection("u", 0, 0, '1'));
  EXPECT_FALSE(lcd.GetMessageTarget(out, sizeof out));
  EXPECT_FALSE(lcd.PruneDeadMessage());
  EXPECT_FALSE(lcd.GetMessageData(&data, &size));
  EXPECT_EQ(data, reinterpret_cast<const uint8_t*>(out));
  EXPECT_EQ(size, 77);
  EXPECT_FALSE(lcd.ClearMessage());
  segment()->messageSize = 0;
  EXPECT_EQ(Dispatch(To("t")), 0);
  segment()->messageSize = busy;
  EXPECT_EQ(std::memcmp(before.data(), block_.get(), kLcdBlockSize), 0);
  EXPECT_EQ(lcd.unlocks, unlocks);
}

TEST_F(CoreLcdLocking, NestedOperationsRelockThroughTheInterface) {
  ASSERT_TRUE(lcd.TryAddConnection("rx", 0, 0, '3'));
  lcd.locksLeft = 1;  // the target cannot be read
  EXPECT_EQ(Dispatch(To("rx")), 1);
  EXPECT_NE(segment()->messageSize, 0u);
  lcd.locksLeft = -1;
  lcd.ClearMessage();
  lcd.locksLeft = 2;  // the format lookup fails, and so does the clear it leads to
  EXPECT_EQ(Dispatch(To("rx")), 2);
  EXPECT_NE(segment()->messageSize, 0u);
  EXPECT_EQ(lcd.holds, 0);
}

TEST(CoreLcdNoSegment, OperationsAnswerNegativelyAndTouchNothing) {
  TestLcdAccessor lcd;
  char out[8];
  const uint8_t* data = nullptr;
  int32_t size = 0;
  EXPECT_EQ(lcd.FindConnection("a", 0), nullptr);
  EXPECT_EQ(lcd.FindConnectionFormat("a", 0), 0);
  EXPECT_FALSE(lcd.TryAddConnection("a", 0, 0, '1'));
  EXPECT_FALSE(lcd.RemoveConnection("a", 0));
  EXPECT_FALSE(lcd.GetMessageTarget(out, sizeof out));
  EXPECT_EQ(lcd.DispatchMessage("\x02\x00\x01z", 4, 11, 1, 0), 0);
  EXPECT_TRUE(lcd.ClearMessage());  // the lock was obtained
  EXPECT_FALSE(lcd.PruneDeadMessage());
  EXPECT_FALSE(lcd.GetMessageData(&data, &size));
  EXPECT_FALSE(lcd.IsSegmentValid());
}
