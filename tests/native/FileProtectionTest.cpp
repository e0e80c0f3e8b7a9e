#include <gtest/gtest.h>

#include "install/FileProtection.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kServer[] = u"C:\\Windows\\system32\\Halcyons\\Lumen\\LumenUtil_ActiveX.exe";

class FileProtectionTest : public WorldTest {
 protected:
  FileProtection Protection() { return FileProtection(world_.GetPlatform()); }
};

TEST_F(FileProtectionTest, ProtectingSetsReadOnlyAndGrantsEveryAccount) {
  world_.files.AddFile(kServer, "exe");
  EXPECT_TRUE(Protection().ProtectFile(MString(kServer), true));
  EXPECT_EQ(world_.Attributes(kServer), FileAttribute::kArchive | FileAttribute::kReadOnly);
  std::string path = MString(kServer).ToUtf8();
  EXPECT_EQ(world_.access.Log(), (Strings{
                                     "Ensure " + path + " type=1 account=26 mask=1F01FF",
                                     "Ensure " + path + " type=1 account=22 mask=1F01FF",
                                     "Ensure " + path + " type=1 account=27 mask=1200A9",
                                 }));
}

TEST_F(FileProtectionTest, ReleasingTakesTheGrantsFirstThenTheAttribute) {
  world_.files.AddFile(kServer, "exe", FileAttribute::kReadOnly);
  world_.access.FailPath(kServer, 1307);
  EXPECT_FALSE(Protection().ProtectFile(MString(kServer), false));
  EXPECT_EQ(world_.Attributes(kServer), 0u) << "read-only goes even when the grants can't";
  EXPECT_EQ(world_.access.Log().size(), 3u);
  EXPECT_EQ(world_.access.Log()[0].rfind("Remove ", 0), 0u);
}

TEST_F(FileProtectionTest, RegistryRepairLetsUsersReadTheControlsKeys) {
  Protection().RepairRegistryAccess();
  ASSERT_EQ(world_.access.Log().size(), 3u);
  EXPECT_EQ(world_.access.Log()[0],
            "Ensure MACHINE\\Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10} type=4 account=27 "
            "mask=20019");
}

}  // namespace
