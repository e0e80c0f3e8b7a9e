// The control's self-registration through the real module loader, with a test
// control whose DllRegisterServer fails as often as the test asks.
#include "install/ControlSelfRegistration.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

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

using WineTest::ProductKeys::kCounterKey;

void SetFailures(DWORD failures) {
  RegSetKeyValueW(HKEY_CURRENT_USER, kCounterKey, L"Failures", REG_DWORD, &failures, sizeof(failures));
}

DWORD Calls(const wchar_t* name) { return WineTest::UserDword(kCounterKey, name); }

class ControlSelfRegistrationTest : public ::testing::Test {
 protected:
  void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kCounterKey); }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kCounterKey); }
  ControlSelfRegistration Registration() { return ControlSelfRegistration(*world_.shim, world_.shim->GetPlatform()); }
  MString Path(const std::wstring& path) { return MString(FromWide(path.c_str())); }
  std::vector<std::string> Reports() { return WineTest::Reports(world_.host); }

  std::wstring control_ = WineTest::BinaryDirectory() + L"\\lumen_test_control.dll";
  WineTest::HostedShim world_;
};

TEST_F(ControlSelfRegistrationTest, OneFailureIsRetriedAfterStoppingPlayers) {
  SetFailures(1);
  EXPECT_TRUE(Registration().RegisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"RegisterCalls"), 2u);
  EXPECT_EQ(Reports(), (std::vector<std::string>{"1032 1 " + Path(control_).ToUtf8() + " 80004005", "18 0 "}));
  EXPECT_TRUE(Registration().UnregisterControl(Path(control_)));
  EXPECT_EQ(Calls(L"UnregisterCalls"), 1u);
}

TEST_F(ControlSelfRegistrationTest, MissingLibraryOrEntryIsReportedWithTheSystemError) {
  std::wstring missing = WineTest::BinaryDirectory() + L"\\no_such_control.ocx";
  std::wstring program = WineTest::HelperProcess::BuiltPath();
  EXPECT_FALSE(Registration().RegisterControl(Path(missing)));
  EXPECT_FALSE(Registration().RegisterControl(Path(program)));
  EXPECT_EQ(Reports(), (std::vector<std::string>{"1033 2 " + Path(missing).ToUtf8() + " 7E",
                                                 "1034 2 " + Path(program).ToUtf8() + " 7F"}));
}

}  // namespace
