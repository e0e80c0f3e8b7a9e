#include "tests/wine/LiveBrokerTest.h"

#include <tlhelp32.h>

#include "broker/BrokerIdentities.h"
#include "broker/BrokerRegistration.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Registry.h"
#include "tests/wine/WineTestSupport.h"

namespace SASM::WineTest {
namespace {

std::string Narrow(const std::wstring& text) {
  int n = WideCharToMultiByte(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), out.data(), n, nullptr, nullptr);
  return out;
}

template <typename Attempt>
HRESULT WithRetries(Attempt attempt) {
  HRESULT result = E_FAIL;
  for (int i = 0; i < 20; ++i) {
    result = attempt();
    if (SUCCEEDED(result) || result == REGDB_E_CLASSNOTREG) return result;
    Sleep(50);
  }
  return result;
}

}  // namespace

std::wstring LiveBrokerTest::HostPath() { return BinaryDirectory() + L"\\LumenUtilHost.exe"; }

std::vector<ScopedHandle> LiveBrokerTest::ServerProcesses() {
  std::vector<ScopedHandle> processes;
  ScopedHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return processes;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry)) {
    if (_wcsicmp(entry.szExeFile, L"LumenUtilHost.exe") != 0) continue;
    ScopedHandle process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
    if (process) processes.push_back(std::move(process));
  }
  return processes;
}

bool LiveBrokerTest::AllServersEnded(DWORD timeout) {
  for (ScopedHandle& process : ServerProcesses()) {
    if (WaitForSingleObject(process.get(), timeout) != WAIT_OBJECT_0) return false;
  }
  return true;
}

HRESULT LiveBrokerTest::Activate(ComPtr<ILumenBroker6>& broker) {
  return WithRetries([&] {
    return CoCreateInstance(CLSID_LumenBrokerImp6, nullptr, CLSCTX_LOCAL_SERVER, IID_ILumenBroker6,
                            broker.receiveVoid());
  });
}

HRESULT LiveBrokerTest::ClassObject(ComPtr<IClassFactory>& factory) {
  return WithRetries([&] {
    return CoGetClassObject(CLSID_LumenBrokerImp6, CLSCTX_LOCAL_SERVER, nullptr, IID_IClassFactory,
                            factory.receiveVoid());
  });
}

void LiveBrokerTest::SetUpTestSuite() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  Win32Registry registry;
  BrokerRegistration::WriteBrokerRegistration(registry, Narrow(HostPath()).c_str(), true);
  // Wine's automation marshaller refuses these interfaces; the test proxy
  // stands in for it, registered over the product's own entries.
  proxy_.reset(LoadLibraryW((BinaryDirectory() + L"\\LumenBrokerProxy.dll").c_str()));
  auto registerProxy = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(proxy_.get(), "DllRegisterServer")));
  proxyRegistered_ = registerProxy && SUCCEEDED(registerProxy());
}

void LiveBrokerTest::TearDownTestSuite() {
  if (proxy_) {
    auto unregisterProxy = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(proxy_.get(), "DllUnregisterServer")));
    if (unregisterProxy) unregisterProxy();
  }
  proxy_.reset();
  proxyRegistered_ = false;
  Win32Registry registry;
  BrokerRegistration::WriteBrokerRegistration(registry, nullptr, false);
  DeleteBothViews(L"Software\\Classes\\CLSID\\" + ToWide(BrokerIdentities::kServed.classId));
  DeleteBothViews(L"Software\\Classes\\TypeLib\\" + ToWide(BrokerIdentities::kLibraryId));
  for (const BrokerGeneration& generation : BrokerIdentities::kGenerations)
    DeleteBothViews(L"Software\\Classes\\Interface\\" + ToWide(generation.interfaceId));
  CoUninitialize();
}

void LiveBrokerTest::SetUp() {
  ASSERT_TRUE(proxyRegistered_) << "the test proxy did not register";
  ASSERT_TRUE(AllServersEnded()) << "a server of an earlier test is still running";
}

// A server that stayed is ended so that it can't answer the next test's activation.
void LiveBrokerTest::TearDown() {
  EXPECT_TRUE(AllServersEnded());
  for (ScopedHandle& process : ServerProcesses()) {
    TerminateProcess(process.get(), 1);
    WaitForSingleObject(process.get(), kExitWait);
  }
}

}  // namespace SASM::WineTest
