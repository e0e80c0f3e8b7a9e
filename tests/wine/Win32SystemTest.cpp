// System facts from the real platform.
#include "engine/win32/Win32System.h"

#include <gtest/gtest.h>

#include "engine/win32/WindowsApi.h"

using namespace SASM;

namespace {

TEST(Win32System, NarrowTextIsWidenedByTheSystemCodePage) {
  Win32System system;
  ASSERT_EQ(GetACP(), 1252u) << "the prefix's code page changed";
  EXPECT_EQ(system.FromSystemCodePage("caf\xE9 \x80"), u"caf\u00E9 \u20AC");
  EXPECT_EQ(system.FromSystemCodePage(""), u"");
}

}  // namespace
