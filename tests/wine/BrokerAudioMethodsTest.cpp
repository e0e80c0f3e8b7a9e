// Audio device notification: through COM against the live server with events
// of this process, and on an object made here, where the registered client's
// callbacks can be fired directly. Wine's device enumerator registers clients
// but reports no devices and never calls back on its own.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <mmdeviceapi.h>

#include <gtest/gtest.h>

#include <vector>

#include "broker/MMNotificationClient.h"
#include "broker/win32/CoLumenBrokerServer.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedHandle.h"
#include "tests/wine/LiveBrokerTest.h"

using namespace SASM;

namespace {

constexpr HRESULT kNotDone = 1;

bool Signalled(const ScopedHandle& event) { return WaitForSingleObject(event.get(), 0) == WAIT_OBJECT_0; }

ScopedHandle NewEvent() { return ScopedHandle(CreateEventW(nullptr, FALSE, FALSE, nullptr)); }

class BrokerAudioLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    ASSERT_EQ(Activate(broker_), S_OK);
    std::vector<ScopedHandle> servers = ServerProcesses();
    ASSERT_EQ(servers.size(), 1u);
    server_ = ScopedHandle(OpenProcess(PROCESS_DUP_HANDLE | PROCESS_QUERY_INFORMATION, FALSE,
                                       GetProcessId(servers[0].get())));
    ASSERT_TRUE(server_);
    // This process as the server can name it, as a player's own broker link would hand it over.
    ASSERT_TRUE(DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), server_.get(), &selfInServer_,
                                PROCESS_DUP_HANDLE, FALSE, 0));
  }
  void TearDown() override {
    broker_.reset();
    // The broker never closes the process handle it was given; its giver does.
    if (selfInServer_) DuplicateHandle(server_.get(), selfInServer_, nullptr, nullptr, 0, FALSE, DUPLICATE_CLOSE_SOURCE);
    server_ = ScopedHandle();
    LiveBrokerTest::TearDown();
  }

  ComPtr<ILumenBroker6> broker_;
  ScopedHandle server_;
  HANDLE selfInServer_ = nullptr;
};

TEST_F(BrokerAudioLive, EventsOfTheClientProcessAreDuplicatedAndBadCookiesOrEventsAnswerOne) {
  LONG_PTR cookie = 0;
  ASSERT_EQ(broker_->BrokerMMNotificationClientCreate(reinterpret_cast<LONG_PTR>(selfInServer_), &cookie), S_OK);
  ASSERT_NE(cookie, 0);
  ScopedHandle first = NewEvent(), second = NewEvent();
  const auto value = [](const ScopedHandle& event) { return reinterpret_cast<LONG_PTR>(event.get()); };

  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(cookie, value(first)), S_OK);
  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDeviceStateChangeEvent(cookie, value(first)), S_OK);
  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(cookie, value(second)), S_OK);

  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(cookie, 0), kNotDone);
  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDeviceStateChangeEvent(cookie + 16, value(first)), kNotDone);
  // A value that names nothing in this process can't be duplicated.
  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDeviceStateChangeEvent(cookie, 0x7FFC), kNotDone);
  EXPECT_EQ(broker_->BrokerMMNotificationClientDestroy(cookie + 16), kNotDone);

  EXPECT_EQ(broker_->BrokerMMNotificationClientDestroy(cookie), S_OK);
  // The entry stays listed: a second destroy still answers 0, and the server lives on.
  EXPECT_EQ(broker_->BrokerMMNotificationClientDestroy(cookie), S_OK);
  EXPECT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(cookie, value(first)), kNotDone);
  LONG_PTR another = 0;
  EXPECT_EQ(broker_->BrokerMMNotificationClientCreate(reinterpret_cast<LONG_PTR>(selfInServer_), &another), S_OK);
  EXPECT_NE(another, 0);
}

// An object made here, so that the client behind a cookie can be reached.
class BrokerAudioDirect : public ::testing::Test {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    broker_.reset(new CoLumenBrokerServer(nullptr));
    self_ = ScopedHandle(OpenProcess(PROCESS_DUP_HANDLE, FALSE, GetCurrentProcessId()));
    ASSERT_TRUE(self_);
    ASSERT_EQ(broker_->BrokerMMNotificationClientCreate(reinterpret_cast<LONG_PTR>(self_.get()), &cookie_), S_OK);
    ASSERT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(
                  cookie_, reinterpret_cast<LONG_PTR>(defaultEvent_.get())),
              S_OK);
    ASSERT_EQ(broker_->BrokerMMNotificationClientSetDeviceStateChangeEvent(
                  cookie_, reinterpret_cast<LONG_PTR>(stateEvent_.get())),
              S_OK);
  }
  void TearDown() override {
    broker_.reset();
    CoUninitialize();
  }
  MMNotificationClient& Client() { return *reinterpret_cast<MMNotificationClient*>(cookie_); }

  ComPtr<ILumenBroker6> broker_;
  ScopedHandle self_;
  ScopedHandle defaultEvent_ = NewEvent(), stateEvent_ = NewEvent();
  LONG_PTR cookie_ = 0;
};

TEST_F(BrokerAudioDirect, TheRegisteredClientsCallbacksSignalTheClientsOwnEvents) {
  EXPECT_TRUE(Client().registered) << "Wine's enumerator takes registrations";
  EXPECT_EQ(Client().OnDefaultDeviceChanged(eCapture, eConsole, u"capture"), 0);
  EXPECT_FALSE(Signalled(defaultEvent_));
  EXPECT_EQ(Client().OnDefaultDeviceChanged(eCapture, eMultimedia, u"capture"), 0);
  EXPECT_TRUE(Signalled(defaultEvent_));
  EXPECT_EQ(Client().OnDefaultDeviceChanged(eRender, eCommunications, u"render"), 0);
  EXPECT_TRUE(Signalled(defaultEvent_));
  EXPECT_FALSE(Signalled(stateEvent_));

  // Wine reports no devices, so no endpoint is found for a state change, and nothing is signalled.
  EXPECT_EQ(Client().OnDeviceStateChanged(u"{0.0.0.00000000}.{5d1e6a2c-0000-4000-8000-00000000lumen}", 1), 0);
  EXPECT_FALSE(Signalled(stateEvent_));
}

// Wine's handle count of a process is always 0, so what the server closes is seen here, handle by handle.
TEST_F(BrokerAudioDirect, ReplacedEventsAndThoseOfDestroyedClientsAreClosed) {
  DWORD flags = 0;
  const auto isOpen = [&flags](AudioPlatform::Handle handle) {
    return GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE;
  };
  const AudioPlatform::Handle replaced = Client().defaultDeviceChangeEvent;
  ASSERT_EQ(broker_->BrokerMMNotificationClientSetDefaultDeviceChangeEvent(
                cookie_, reinterpret_cast<LONG_PTR>(defaultEvent_.get())),
            S_OK);
  EXPECT_FALSE(isOpen(replaced));
  const AudioPlatform::Handle held[] = {Client().defaultDeviceChangeEvent, Client().deviceStateChangeEvent};
  EXPECT_TRUE(isOpen(held[0]) && isOpen(held[1]));
  ASSERT_EQ(broker_->BrokerMMNotificationClientDestroy(cookie_), S_OK);
  EXPECT_FALSE(isOpen(held[0]) || isOpen(held[1]));

  // A client still held when the broker object ends is shut down with it.
  LONG_PTR kept = 0;
  ASSERT_EQ(broker_->BrokerMMNotificationClientCreate(reinterpret_cast<LONG_PTR>(self_.get()), &kept), S_OK);
  ASSERT_EQ(broker_->BrokerMMNotificationClientSetDeviceStateChangeEvent(
                kept, reinterpret_cast<LONG_PTR>(stateEvent_.get())),
            S_OK);
  const AudioPlatform::Handle last = reinterpret_cast<MMNotificationClient*>(kept)->deviceStateChangeEvent;
  broker_.reset();
  EXPECT_FALSE(isOpen(last));
}

}  // namespace
