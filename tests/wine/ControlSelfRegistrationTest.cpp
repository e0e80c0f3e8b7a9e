// The control's self-registration through the real module loader, with a test
// control whose DllRegisterServer fails as often as the test asks.
#include "install/ControlSelfRegistration.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr wchar_t kCounterKey[] = L"Software\\LumenUtilTests\\TestControl";

void SetFailures(DWORD failures) {
  RegSetKeyValueW(HKEY_CURRENT_USER, kCounterKey, L"Failures", REG_DWORD, &failures, sizeof(failures));
}

DWORD Calls(const wchar_t* name) {
  DWORD value = 0, size = sizeof(value);
  if (RegGetValueW(HKEY_CURRENT_USER, kCounterKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size) != ERROR_SUCCESS)
    return 0;
  return value;
}

class ControlSelfRegistrationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, kCounterKey);
    control_ = WineTest::BinaryDirectory() + L"\\lumen_test_control.dll";
    host_ = std::make_unique<ReferenceHost>(HostOptions{}, MString(u""));
    shim_.reset(StartShim(host_.get(), Win32Platform()));
    host_->shim = shim_.get();
  }
  void TearDown() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, kCounterKey);
    host_->shim = nullptr;
  }
  ControlSelfRegistration Registration() { return ControlSelfRegistration(*shim_, shim_->GetPlatform()); }
  MString Path(const std::wstring& path) { return MString(FromWide(path.c_str())); }
  std::vector<std::string> Reports() const {
    std::vector<std::string> lines;
    for (const auto& entry : host_->Log().Entries())
      lines.push_back(std::to_string(entry.code) + " " + std::to_string(entry.severity) + " " + entry.text.ToUtf8());
    return lines;
  }

  std::wstring control_;
  std::unique_ptr<ReferenceHost> host_;
  std::unique_ptr<LumenBrokerShim> shim_;
};

TEST_F(ControlSelfRegistrationTest, OneFailureIsRetriedAfterStoppingPlayers) {
  SetFailures(1);
  EXPECT_TRUE(Registration().RegisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"RegisterCalls"), 2u);
  EXPECT_EQ(Reports(), (std::vector<std::string>{"1032 1 " + Path(control_).ToUtf8() + " 80004005", "18 0 "}));
}

TEST_F(ControlSelfRegistrationTest, TwoFailuresAreForTheUser) {
  SetFailures(2);
  EXPECT_FALSE(Registration().RegisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"RegisterCalls"), 2u) << "one retry only";
  std::string path = Path(control_).ToUtf8();
  EXPECT_EQ(Reports(), (std::vector<std::string>{"1032 1 " + path + " 80004005", "18 0 ", "1032 2 " + path + " 80004005"}));
}

TEST_F(ControlSelfRegistrationTest, MissingLibraryOrEntryIsReportedWithTheSystemError) {
  std::wstring missing = WineTest::BinaryDirectory() + L"\\no_such_control.ocx";
  std::wstring program = WineTest::HelperProcess::BuiltPath();
  EXPECT_FALSE(Registration().RegisterControl(Path(missing)));
  EXPECT_FALSE(Registration().RegisterControl(Path(program)));
  EXPECT_EQ(Reports(), (std::vector<std::string>{"1033 2 " + Path(missing).ToUtf8() + " 7E",
                                                 "1034 2 " + Path(program).ToUtf8() + " 7F"}));
}

TEST_F(ControlSelfRegistrationTest, FirstSuccessCallsOnceAndUnregisteringCallsTheControl) {
  EXPECT_TRUE(Registration().RegisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"RegisterCalls"), 1u);
  EXPECT_TRUE(Registration().UnregisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"UnregisterCalls"), 1u);
  EXPECT_TRUE(Reports().empty());
}

}  // namespace
