#pragma once
// A fixture for tests that talk to the broker server as COM starts it: the
// suite registers the server for the reference host and the test-only proxy,
// each test starts with no server running and leaves none behind, and the
// suite removes every registry entry it made.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/win32/BrokerProxyRegistration.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedHandle.h"

namespace SASM::WineTest {

class LiveBrokerTest : public ::testing::Test {
 public:
  static constexpr DWORD kExitWait = 10000;

  static std::wstring HostPath();
  // Running copies of the reference host, opened for waiting.
  static std::vector<ScopedHandle> ServerProcesses();
  static bool AllServersEnded(DWORD timeout = kExitWait);
  // COM activation races with a server that is quitting; both try again a few times.
  static HRESULT Activate(ComPtr<ILumenBroker6>& broker);

 protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();
  void SetUp() override;
  void TearDown() override;

 private:
  static inline std::unique_ptr<BrokerProxyRegistration> proxy_;
};

}  // namespace SASM::WineTest
