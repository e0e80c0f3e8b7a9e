// The shim the module hands out, with its Windows operations.
#include "engine/win32/Win32LumenBrokerShim.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"

using namespace SASM;

namespace {

TEST(Win32LumenBrokerShim, RefreshElevationPolicyIsFalseWhenTheBrowserLacksTheExport) {
  // Wine's ieframe.dll has no IERefreshElevationPolicy; nothing is reported for it either.
  ReferenceHost host(HostOptions{}, MString(u""));
  LumenBrokerShim* shim = Win32LumenBrokerShim::Start(&host, Win32Platform());
  ASSERT_NE(shim, nullptr);
  host.shim = shim;
  EXPECT_FALSE(shim->RefreshElevationPolicy());
  EXPECT_EQ(host.Log().Count(), 0u);
  host.shim = nullptr;
  delete shim;
}

}  // namespace
