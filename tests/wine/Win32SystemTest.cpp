// System facts and processes from the real platform.
#include "engine/win32/Win32System.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/win32/WindowsApi.h"

using namespace SASM;

namespace {

TEST(Win32System, ProcessListHoldsThisProcess) {
  Win32System system;
  std::vector<uint32_t> ids;
  ASSERT_TRUE(system.EnumerateProcesses(ids));
  EXPECT_NE(std::find(ids.begin(), ids.end(), GetCurrentProcessId()), ids.end());
  // Wine's own services are there too.
  EXPECT_GT(ids.size(), 1u);
}

TEST(Win32System, NarrowTextIsWidenedByTheSystemCodePage) {
  Win32System system;
  ASSERT_EQ(GetACP(), 1252u) << "the prefix's code page changed";
  EXPECT_EQ(system.FromSystemCodePage("caf\xE9 \x80"), u"caf\u00E9 \u20AC");
  EXPECT_EQ(system.FromSystemCodePage(""), u"");
}

}  // namespace
