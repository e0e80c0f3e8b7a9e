// The connection directory's broker methods: through COM against the live
// server, as two sandboxed players reach it, and on an object in this process
// where an edge is easier to reach without the marshaller in between.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <string>

#include "broker/win32/CoLumenBrokerServer.h"
#include "connections/LcdSegment.h"
#include "connections/win32/Win32LcdAccessor.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedSafeArray.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kNegative = 1;
constexpr HRESULT kBadArgument = static_cast<HRESULT>(0x80070057);
constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr ULONG kLargestMessage = 40960;

// "player-é" as a client names it and as the directory stores it.
constexpr const wchar_t* kPlayerWide = L"player-\u00e9";
constexpr std::string_view kPlayerUtf8 = "player-\xC3\xA9";

using WineTest::ByteArray;
using WineTest::BytesOf;

// A message in the two-byte-length form: 2, the name's length big-endian, the
// name, then the payload, padded with zeros to size when size is larger.
std::string Message(std::string_view target, std::string_view payload, size_t size = 0) {
  std::string bytes{2, static_cast<char>(target.size() >> 8), static_cast<char>(target.size())};
  bytes.append(target).append(payload);
  if (bytes.size() < size) bytes.resize(size, 0);
  return bytes;
}

bool DirectoryExists() {
  return ScopedHandle(OpenMutexA(SYNCHRONIZE, FALSE, Win32LcdAccessor::kMutexName)).valid() ||
         ScopedHandle(OpenFileMappingA(FILE_MAP_READ, FALSE, Win32LcdAccessor::kMappingName)).valid();
}

// The directory's objects vanish with their last handle: every test starts
// with none and leaves none behind, after the server has ended.
class BrokerLcdLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    ASSERT_FALSE(DirectoryExists()) << "a directory is left over";
  }
  void TearDown() override {
    LiveBrokerTest::TearDown();
    EXPECT_FALSE(DirectoryExists());
  }
};

// An object made here, without COM's routing, released by the fixture.
class BrokerLcdDirect : public ::testing::Test {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ASSERT_FALSE(DirectoryExists()) << "a directory is left over";
    broker_.reset(new CoLumenBrokerServer(nullptr));
  }
  void TearDown() override {
    broker_.reset();
    EXPECT_FALSE(DirectoryExists()) << "the accessor outlived its object";
    CoUninitialize();
  }

  ComPtr<ILumenBroker6> broker_;
};

}  // namespace

TEST_F(BrokerLcdLive, TwoClientsMeetThroughTheBrokerAndPassAMessage) {
  ComPtr<ILumenBroker6> listener, sender;
  ASSERT_EQ(Activate(listener), S_OK);
  ASSERT_EQ(Activate(sender), S_OK);
  ScopedBstr name(kPlayerWide);

  ASSERT_EQ(listener->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), S_OK);
  EXPECT_EQ(sender->BrokerLcdTryAddConnection(name.get(), 2, 2, '3'), kNegative) << "realm 2 shares realm 0's names";
  LONG format = 0;
  EXPECT_EQ(sender->BrokerLcdFindConnectionFormat(name.get(), 0, &format), S_OK);
  EXPECT_EQ(format, 3);
  EXPECT_EQ(sender->BrokerLcdFindConnectionFormat(name.get(), 1, &format), kNegative);
  EXPECT_EQ(format, 0);

  const std::string message = Message(kPlayerUtf8, "hello");
  EXPECT_EQ(sender->BrokerLcdDispatchMessage(ByteArray(message).get(), 11, 3, 0), S_OK);

  // Held across target and data, as a receiver must to read one message.
  LONG count = 0;
  ASSERT_EQ(listener->BrokerLcdLock(&count), S_OK);
  EXPECT_EQ(count, 1);
  ScopedBstr target;
  EXPECT_EQ(listener->BrokerLcdGetMessageTarget(target.receive()), S_OK);
  EXPECT_STREQ(target.get(), kPlayerWide);
  ScopedSafeArray data;
  EXPECT_EQ(listener->BrokerLcdGetMessageData(data.receive()), S_OK);
  EXPECT_EQ(BytesOf(data.get()), message);
  EXPECT_EQ(listener->BrokerLcdClearMessage(), S_OK);
  ASSERT_EQ(listener->BrokerLcdUnlock(&count), S_OK);
  EXPECT_EQ(count, 0);

  ScopedBstr none;
  EXPECT_EQ(listener->BrokerLcdGetMessageTarget(none.receive()), kNegative);
  EXPECT_FALSE(none);
  ScopedSafeArray noData;
  EXPECT_EQ(listener->BrokerLcdGetMessageData(noData.receive()), kNegative);
  EXPECT_FALSE(noData);
  EXPECT_EQ(listener->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
  EXPECT_EQ(listener->BrokerLcdRemoveConnection(name.get(), 0), kNegative);
}

TEST_F(BrokerLcdLive, DispatchResultsAsTheSenderSeesThem) {
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);
  ScopedBstr name(L"listener");
  ASSERT_EQ(broker->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), S_OK);

  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(Message("listener", "one")).get(), 11, 3, 0), S_OK);
  // One slot for the machine: the second waits for the first to be taken.
  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(Message("listener", "two")).get(), 11, 3, 0), kNegative);
  EXPECT_EQ(broker->BrokerLcdClearMessage(), S_OK);

  // Nobody listens: refused, and the slot is free again at once.
  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(Message("nobody", "x")).get(), 11, 3, 0), kBadArgument);
  ScopedSafeArray data;
  EXPECT_EQ(broker->BrokerLcdGetMessageData(data.receive()), kNegative);

  // A target that cannot be read is posted all the same and stays; it is not dead yet.
  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(std::string("\x07\x00\x01x", 4)).get(), 11, 3, 0), S_OK);
  EXPECT_EQ(broker->BrokerLcdGetMessageData(data.receive()), S_OK);
  EXPECT_EQ(broker->BrokerLcdPruneDeadMessage(), kNegative);
  EXPECT_EQ(broker->BrokerLcdClearMessage(), S_OK);
  EXPECT_EQ(broker->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
}

// A refusal by the method and one by the marshaller both read 0x80004005. The
// object opens the directory on its first call, before it tests anything, so
// a fresh object that has opened it was reached.
TEST_F(BrokerLcdLive, MessageArraysThatReachTheMethod) {
  ComPtr<ILumenBroker6> keeper;  // keeps the server up between the probes
  ASSERT_EQ(Activate(keeper), S_OK);
  auto dispatchFromAFreshObject = [](SAFEARRAY* array, bool& reached) {
    ComPtr<ILumenBroker6> probe;
    if (Activate(probe) != S_OK) return E_UNEXPECTED;
    const HRESULT result = probe->BrokerLcdDispatchMessage(array, 11, 3, 0);
    reached = DirectoryExists();
    return result;
  };

  SAFEARRAYBOUND square[2] = {{2, 0}, {2, 0}};
  ScopedSafeArray twoDimensions(SafeArrayCreate(VT_UI1, 2, square));
  ScopedSafeArray shorts(SafeArrayCreateVector(VT_I2, 0, 4));
  const struct {
    const char* what;
    ScopedSafeArray array;
  } refused[] = {
      {"40,961 bytes", ByteArray(Message("big", "payload", kLargestMessage + 1))},
      {"lower bound 1", ByteArray(Message("big", "x"), 1)},
      {"two dimensions", std::move(twoDimensions)},
      {"two-byte elements", std::move(shorts)},
      {"no array", ScopedSafeArray()},
  };
  for (const auto& shape : refused) {
    bool reached = false;
    EXPECT_EQ(dispatchFromAFreshObject(shape.array.get(), reached), kFailure) << shape.what;
    EXPECT_TRUE(reached) << shape.what << " was refused before the method";
    EXPECT_FALSE(DirectoryExists()) << "the probe's release kept the directory open";
  }

  ScopedBstr name(L"big");
  ASSERT_EQ(keeper->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), S_OK);
  const std::string largest = Message("big", "payload", kLargestMessage);
  EXPECT_EQ(keeper->BrokerLcdDispatchMessage(ByteArray(largest).get(), 11, 3, 0), S_OK);
  ScopedSafeArray data;
  EXPECT_EQ(keeper->BrokerLcdGetMessageData(data.receive()), S_OK);
  EXPECT_EQ(BytesOf(data.get()), largest);
  EXPECT_EQ(keeper->BrokerLcdClearMessage(), S_OK);
  EXPECT_EQ(keeper->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
}

TEST_F(BrokerLcdLive, LockCountsNestAndKeepTheirTickAcrossCalls) {
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);
  LONG count = 0, firstTick = 0, laterTick = 0, timeout = 0;
  EXPECT_EQ(broker->BrokerLcdLock(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(broker->BrokerLcdLockTime(&firstTick), S_OK);
  Sleep(50);
  EXPECT_EQ(broker->BrokerLcdLock(&count), S_OK);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(broker->BrokerLcdLockTime(&laterTick), S_OK);
  EXPECT_EQ(laterTick, firstTick) << "a nested hold restarted the clock";
  EXPECT_EQ(broker->BrokerLcdUnlock(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(broker->BrokerLcdUnlock(&count), S_OK);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(broker->BrokerLcdMessageTimeout(&timeout), S_OK);
  EXPECT_EQ(timeout, 5000);
}

TEST_F(BrokerLcdDirect, AccessorIsOpenedByTheFirstCallEvenABadOne) {
  EXPECT_FALSE(DirectoryExists());
  LONG timeout = 0;
  EXPECT_EQ(broker_->BrokerLcdMessageTimeout(nullptr), kFailure);
  EXPECT_TRUE(DirectoryExists());
  EXPECT_EQ(broker_->BrokerLcdMessageTimeout(&timeout), S_OK);
  EXPECT_EQ(timeout, 5000);
  // The fixture's release checks that the object took the directory with it.
}

TEST_F(BrokerLcdDirect, AccessorThatCouldNotOpenIsKeptAndNeverRetried) {
  {
    // A segment of another layout, present only for the first call.
    ScopedHandle foreign(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            static_cast<DWORD>(kLcdSegmentSize), Win32LcdAccessor::kMappingName));
    ASSERT_TRUE(foreign.valid());
    auto* segment = static_cast<LcdSegment*>(MapViewOfFile(foreign.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0));
    ASSERT_NE(segment, nullptr);
    segment->layoutVersion = 2;
    UnmapViewOfFile(segment);
    LONG count = -1;
    EXPECT_EQ(broker_->BrokerLcdLock(&count), S_OK);
    EXPECT_EQ(count, 0);
  }
  ASSERT_FALSE(DirectoryExists());
  LONG count = -1;
  EXPECT_EQ(broker_->BrokerLcdLock(&count), S_OK);
  EXPECT_EQ(count, 0);
  EXPECT_FALSE(DirectoryExists()) << "the directory was opened a second time";
  // Negative answers throughout, not failures.
  ScopedBstr name(L"anyone");
  EXPECT_EQ(broker_->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), kNegative);
  EXPECT_EQ(broker_->BrokerLcdDispatchMessage(ByteArray(Message("anyone", "x")).get(), 11, 3, 0), kNegative);
  EXPECT_EQ(broker_->BrokerLcdClearMessage(), kNegative);
}

TEST_F(BrokerLcdDirect, MissingArgumentsFailAndAFreeSlotLeavesTheOutputsAsTheyCame) {
  ScopedBstr name(L"anyone");
  EXPECT_EQ(broker_->BrokerLcdLock(nullptr), kFailure);
  EXPECT_EQ(broker_->BrokerLcdUnlock(nullptr), kFailure);
  EXPECT_EQ(broker_->BrokerLcdLockTime(nullptr), kFailure);
  LONG format = 0;
  EXPECT_EQ(broker_->BrokerLcdFindConnectionFormat(nullptr, 0, &format), kFailure);
  EXPECT_EQ(broker_->BrokerLcdFindConnectionFormat(name.get(), 0, nullptr), kFailure);
  EXPECT_EQ(broker_->BrokerLcdRemoveConnection(nullptr, 0), kFailure);
  EXPECT_EQ(broker_->BrokerLcdTryAddConnection(nullptr, 0, 0, '3'), kFailure);
  EXPECT_EQ(broker_->BrokerLcdGetMessageTarget(nullptr), kFailure);
  EXPECT_EQ(broker_->BrokerLcdDispatchMessage(nullptr, 11, 3, 0), kFailure);
  EXPECT_EQ(broker_->BrokerLcdGetMessageData(nullptr), kFailure);
  ScopedBstr untouched(L"as it came");
  BSTR target = untouched.get();
  EXPECT_EQ(broker_->BrokerLcdGetMessageTarget(&target), kNegative);
  EXPECT_EQ(target, untouched.get());
  SAFEARRAY* sentinel = reinterpret_cast<SAFEARRAY*>(static_cast<uintptr_t>(0x5A5A));
  SAFEARRAY* data = sentinel;
  EXPECT_EQ(broker_->BrokerLcdGetMessageData(&data), kNegative);
  EXPECT_EQ(data, sentinel);
}

TEST_F(BrokerLcdDirect, ArrayThatCannotBeAccessedGivesTheAccessFailure) {
  ScopedSafeArray array = ByteArray(Message("anyone", "x"));
  // The platform allows 65,535 locks at a time; access takes one more.
  int locks = 0;
  while (locks < 0x10000 && SUCCEEDED(SafeArrayLock(array.get()))) ++locks;
  ASSERT_EQ(locks, 0xFFFF);
  EXPECT_EQ(broker_->BrokerLcdDispatchMessage(array.get(), 11, 3, 0), E_UNEXPECTED);
  while (locks-- > 0) SafeArrayUnlock(array.get());
  ScopedSafeArray data;
  EXPECT_EQ(broker_->BrokerLcdGetMessageData(data.receive()), kNegative);
}
