// StopService against the prefix's service control manager: a test service,
// installed under the feedback service's name.
#include "removal/ServiceStopper.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/win32/ScopedServiceHandle.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "install/ServiceRunner.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr wchar_t kName[] = L"CorvaLumenPlayerFeedbackSvc";

DWORD StateOf(SC_HANDLE service) {
  SERVICE_STATUS status = {};
  return QueryServiceStatus(service, &status) ? status.dwCurrentState : 0;
}

class ServiceStopperTest : public ::testing::Test {
 protected:
  void SetUp() override {
    manager_.reset(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    ASSERT_TRUE(manager_);
    Uninstall();
  }
  void TearDown() override { Uninstall(); }

  void InstallRunning() {
    std::wstring command = L"\"" + WineTest::BinaryDirectory() + L"\\lumen_test_service.exe\" " + kName;
    service_.reset(CreateServiceW(manager_.get(), kName, L"Corva Lumen Player Feedback Service", SERVICE_ALL_ACCESS,
                                  SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                  command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    ASSERT_TRUE(service_) << GetLastError();
    ASSERT_TRUE(StartServiceW(service_.get(), 0, nullptr)) << GetLastError();
    for (int i = 0; i < 100 && StateOf(service_.get()) != SERVICE_RUNNING; ++i) Sleep(50);
    ASSERT_EQ(StateOf(service_.get()), static_cast<DWORD>(SERVICE_RUNNING));
  }

  void Uninstall() {
    ScopedServiceHandle service(OpenServiceW(manager_.get(), kName, SERVICE_ALL_ACCESS));
    if (!service) return;
    SERVICE_STATUS status = {};
    if (StateOf(service.get()) != SERVICE_STOPPED) ControlService(service.get(), SERVICE_CONTROL_STOP, &status);
    for (int i = 0; i < 200 && StateOf(service.get()) != SERVICE_STOPPED; ++i) Sleep(50);
    DeleteService(service.get());
    service_.reset();
  }

  bool Stop() {
    ServiceRunner runner(ServiceRunner::Service::Feedback, MString(u"unused.exe"), host_, Win32Platform());
    return ServiceStopper(host_, Win32Platform()).StopService(runner);
  }

  std::vector<std::string> Reports() { return WineTest::Reports(host_); }

  ScopedServiceHandle manager_;
  ScopedServiceHandle service_;
  ReferenceHost host_{HostOptions(), MString(u"")};
};

TEST_F(ServiceStopperTest, AbsentServiceNeedsNoStopAndARunningOneIsStopped) {
  EXPECT_TRUE(Stop());
  EXPECT_TRUE(Reports().empty());

  InstallRunning();
  EXPECT_TRUE(Stop());
  EXPECT_EQ(StateOf(service_.get()), static_cast<DWORD>(SERVICE_STOPPED));
  // The stop is quick, but the manager may still show it pending at the first look.
  std::vector<std::string> reports = Reports();
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.back(), "35 0 ");
}

}  // namespace
