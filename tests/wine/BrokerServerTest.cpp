// The broker server as COM starts it: registered for the reference host,
// activated by a client of this process, and watched as a process. The class
// object's counts are also checked in this process, without COM's routing.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/win32/BrokerServerLifecycle.h"
#include "broker/win32/CoLumenBrokerServerFactory.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

// Long enough for a server that is going to quit to have quit.
constexpr DWORD kStaysUpWait = 700;

class BrokerServerTest : public WineTest::LiveBrokerTest {};

// Through the system's IDispatch marshalling: the test proxy only carries the broker's own methods.
TEST_F(BrokerServerTest, ObjectAnswersTheNewestInterfaceAloneAndDispatchesThroughTheSecondGenerationsView) {
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);
  // Every method of the fifth generation is in the vtable, but it is not offered.
  ComPtr<ILumenBroker5> fifth;
  EXPECT_EQ(broker->QueryInterface(IID_ILumenBroker5, fifth.receiveVoid()), E_NOINTERFACE);
  EXPECT_FALSE(fifth);

  ComPtr<IDispatch> dispatch;
  ASSERT_EQ(broker->QueryInterface(IID_IDispatch, dispatch.receiveVoid()), S_OK);
  UINT count = 0;
  EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(dispatch->GetTypeInfo(1, 0, info.receive()), DISP_E_BADINDEX);
  EXPECT_FALSE(info);
  ASSERT_EQ(dispatch->GetTypeInfo(0, 0, info.receive()), S_OK);
  ScopedBstr name;
  ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_STREQ(name.get(), L"ILumenBroker2");

  OLECHAR* names[] = {const_cast<OLECHAR*>(L"BrokerCloseHandle"), const_cast<OLECHAR*>(L"BrokerIsWritablePath")};
  DISPID id = 0;
  // Later generations' names are unknown to the dispatch side.
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names + 1, 1, 0, &id), DISP_E_UNKNOWNNAME);
  ASSERT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
  EXPECT_EQ(id, 0x60020001);
  VARIANTARG cookie;
  VariantInit(&cookie);
  cookie.vt = VT_UI4;
  cookie.ulVal = 0x7777;
  DISPPARAMS arguments{&cookie, nullptr, 1, 0};
  EXCEPINFO exception{};
  // The method's own failure, an unknown cookie, comes back as an exception carrying its code.
  EXPECT_EQ(dispatch->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<SCODE>(0x80070057));
  for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
}

TEST_F(BrokerServerTest, TwoClientsGetSeparateObjectsOfOneServerThatEndsWithTheLastRelease) {
  ComPtr<ILumenBroker6> first, second;
  ASSERT_EQ(Activate(first), S_OK);
  ASSERT_EQ(Activate(second), S_OK);
  ComPtr<IUnknown> firstIdentity, secondIdentity;
  ASSERT_EQ(first->QueryInterface(IID_IUnknown, firstIdentity.receiveVoid()), S_OK);
  ASSERT_EQ(second->QueryInterface(IID_IUnknown, secondIdentity.receiveVoid()), S_OK);
  EXPECT_NE(firstIdentity.get(), secondIdentity.get());
  std::vector<ScopedHandle> servers = ServerProcesses();
  ASSERT_EQ(servers.size(), 1u);

  // One object gone, the other still served.
  firstIdentity.reset();
  first.reset();
  EXPECT_EQ(WaitForSingleObject(servers[0].get(), kStaysUpWait), static_cast<DWORD>(WAIT_TIMEOUT));
  ScopedBstr path(L"C:\\windows\\x.sol");
  EXPECT_EQ(second->BrokerIsWritablePath(path.get(), 1), E_FAIL);
  secondIdentity.reset();
  second.reset();
  ASSERT_EQ(WaitForSingleObject(servers[0].get(), kExitWait), WAIT_OBJECT_0);
  // The quit message's code is the server's exit code.
  DWORD exitCode = 1;
  EXPECT_TRUE(GetExitCodeProcess(servers[0].get(), &exitCode));
  EXPECT_EQ(exitCode, 0u);
}

// In this process, without COM's routing: the counts behind the quit rule and
// the registration's one-time cookie. One test, since a process registers once.
TEST_F(BrokerServerTest, ClassObjectCountsAndOneRegistrationPerProcess) {
  auto quitPosted = [] {
    MSG message{};
    return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE;
  };
  // A quit that an earlier window of this process left in the queue is not this server's.
  while (quitPosted()) {
  }
  ASSERT_EQ(BrokerServerLifecycle::registrationCookie, 0u) << "this process registered before";
  EXPECT_EQ(BrokerServerLifecycle::RegisterBrokerClassObject(0, nullptr), S_OK);
  EXPECT_EQ(BrokerServerLifecycle::factory, nullptr);
  EXPECT_EQ(BrokerServerLifecycle::RevokeBrokerClassObject(), E_FAIL);

  ASSERT_EQ(BrokerServerLifecycle::RegisterBrokerClassObject(1, nullptr), S_OK);
  CoLumenBrokerServer::Factory* factory = BrokerServerLifecycle::factory;
  ASSERT_NE(factory, nullptr);
  EXPECT_NE(BrokerServerLifecycle::registrationCookie, 0u);
  EXPECT_EQ(BrokerServerLifecycle::RegisterBrokerClassObject(1, nullptr), E_FAIL);

  ComPtr<IClassFactory> classFactory;
  EXPECT_EQ(factory->QueryInterface(IID_IClassFactory, classFactory.receiveVoid()), S_OK);

  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_ILumenBroker6, broker.receiveVoid()), S_OK);
  EXPECT_EQ(factory->objectCount, 1);
  EXPECT_FALSE(BrokerServerLifecycle::CanUnload(factory));

  ASSERT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->lockCount, 1);
  broker.reset();
  EXPECT_EQ(factory->objectCount, 0);
  EXPECT_FALSE(quitPosted()) << "a locked server quit";
  ASSERT_EQ(factory->LockServer(FALSE), S_OK);
  EXPECT_TRUE(BrokerServerLifecycle::CanUnload(factory));
  EXPECT_FALSE(quitPosted()) << "unlocking quit";

  // The object made for an unknown interface is released at once, and that release quits.
  ComPtr<ILumenBroker5> fifth;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_ILumenBroker5, fifth.receiveVoid()), E_NOINTERFACE);
  EXPECT_FALSE(fifth);
  EXPECT_EQ(factory->objectCount, 0);
  EXPECT_TRUE(quitPosted());
  classFactory.reset();

  EXPECT_EQ(BrokerServerLifecycle::RevokeBrokerClassObject(), S_OK);
  EXPECT_EQ(BrokerServerLifecycle::factory, nullptr);
  // The cookie outlives the revocation: no second registration, so no second server.
  EXPECT_NE(BrokerServerLifecycle::registrationCookie, 0u);
  EXPECT_EQ(BrokerServerLifecycle::RegisterBrokerClassObject(1, nullptr), E_FAIL);
  EXPECT_EQ(BrokerServerLifecycle::RunBrokerServer(nullptr), E_FAIL);
  EXPECT_TRUE(FAILED(BrokerServerLifecycle::RevokeBrokerClassObject()));
  EXPECT_FALSE(quitPosted());
}

}  // namespace
