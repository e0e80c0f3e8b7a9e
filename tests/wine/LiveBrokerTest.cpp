#include "tests/wine/LiveBrokerTest.h"

#include <tlhelp32.h>

#include "engine/win32/BrokerActivation.h"
#include "tests/wine/WineTestSupport.h"

namespace SASM::WineTest {

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

HRESULT LiveBrokerTest::Activate(ComPtr<ILumenBroker6>& broker) { return BrokerActivation::Activate(broker); }

void LiveBrokerTest::SetUpTestSuite() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  BrokerActivation::Register(HostPath());
  proxy_ = std::make_unique<BrokerProxyRegistration>(BinaryDirectory() + L"\\LumenBrokerProxy.dll");
}

void LiveBrokerTest::TearDownTestSuite() {
  proxy_.reset();
  BrokerActivation::Unregister();
  CoUninitialize();
}

void LiveBrokerTest::SetUp() {
  ASSERT_TRUE(proxy_ && proxy_->registered()) << "the test proxy did not register";
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
