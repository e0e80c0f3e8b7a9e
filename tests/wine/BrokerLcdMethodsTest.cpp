// The connection directory's broker methods: through COM against the live
// server, as two sandboxed players reach it, and on an object in this process
// where an edge is easier to reach without the marshaller in between.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

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

bool DirectoryExists() { return WineTest::LcdMutexExists() || WineTest::LcdMappingExists(); }

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

  const std::string message = Message(kPlayerUtf8, "hello");
  EXPECT_EQ(sender->BrokerLcdDispatchMessage(ByteArray(message).get(), 11, 3, 0), S_OK);
  // One slot for the machine: the second waits for the first to be taken.
  EXPECT_EQ(sender->BrokerLcdDispatchMessage(ByteArray(message).get(), 11, 3, 0), kNegative);

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

  // Nobody listens: refused, and the slot stays free.
  EXPECT_EQ(sender->BrokerLcdDispatchMessage(ByteArray(Message("nobody", "x")).get(), 11, 3, 0), kBadArgument);
  ScopedSafeArray noData;
  EXPECT_EQ(listener->BrokerLcdGetMessageData(noData.receive()), kNegative);
  EXPECT_FALSE(noData);
  EXPECT_EQ(listener->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
  EXPECT_EQ(listener->BrokerLcdRemoveConnection(name.get(), 0), kNegative);
}

TEST_F(BrokerLcdLive, TheLargestMessageCrossesWholeAndOneByteMoreIsRefused) {
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);
  ScopedBstr name(L"big");
  ASSERT_EQ(broker->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), S_OK);
  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(Message("big", "x", kLargestMessage + 1)).get(), 11, 3, 0),
            kFailure);
  const std::string largest = Message("big", "payload", kLargestMessage);
  EXPECT_EQ(broker->BrokerLcdDispatchMessage(ByteArray(largest).get(), 11, 3, 0), S_OK);
  ScopedSafeArray data;
  EXPECT_EQ(broker->BrokerLcdGetMessageData(data.receive()), S_OK);
  EXPECT_EQ(BytesOf(data.get()), largest);
  EXPECT_EQ(broker->BrokerLcdClearMessage(), S_OK);
  EXPECT_EQ(broker->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
}

// An object that could not open the directory keeps its closed accessor, gives
// negative answers, and takes it with it when released (the fixture checks that).
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
}
