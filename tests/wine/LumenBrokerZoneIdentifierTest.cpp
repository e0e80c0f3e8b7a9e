// The internet zone mark, written and read back on real files.
#include "broker/win32/LumenBrokerZoneIdentifier.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/win32/ComInitializer.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

TEST(LumenBrokerZoneIdentifier, AnUnmarkedOrZoneZeroFileIsMarkedAsFromTheInternetAndAnotherZoneIsKept) {
  ComInitializer com;
  WineTest::TempTree tree;
  const std::wstring directory = WineTest::TestDirectory(L"Zone\\");
  const struct {
    const wchar_t* name;
    const char* mark;  // null: none
    uint32_t zone;
  } kCases[] = {{L"fresh.sol", nullptr, 3}, {L"trusted.sol", "[ZoneTransfer]\r\nZoneId=2\r\n", 2},
                {L"local.sol", "[ZoneTransfer]\r\nZoneId=0\r\n", 3}};
  for (const auto& c : kCases) {
    const std::wstring path = directory + c.name;
    tree.File(path, "data");
    uint32_t zone = 99;
    if (c.mark) tree.File(path + L":Zone.Identifier", c.mark);
    else EXPECT_FALSE(LumenBrokerZoneIdentifier::ReadMark(path.c_str(), zone));
    LumenBrokerZoneIdentifier().Mark(path.c_str());
    EXPECT_TRUE(LumenBrokerZoneIdentifier::ReadMark(path.c_str(), zone));
    EXPECT_EQ(zone, c.zone) << c.mark;
    DeleteFileW((path + L":Zone.Identifier").c_str());
  }
}
