#include <gtest/gtest.h>

#include "install/ControlSelfRegistration.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kControl[] = u"C:\\Windows\\system32\\Halcyons\\Lumen\\LumenCtrl.ocx";
constexpr int32_t kFailed = static_cast<int32_t>(0x80004005u);

class ControlSelfRegistrationTest : public WorldTest {
 protected:
  ControlSelfRegistration Registration() { return ControlSelfRegistration(*world_.shim, world_.GetPlatform()); }
};

TEST_F(ControlSelfRegistrationTest, SecondFailureIsForTheUserAndTheLibraryIsFreed) {
  world_.modules.AddModule(kControl, {{"DllRegisterServer", {kFailed, static_cast<int32_t>(0x8002801Cu)}}});
  EXPECT_FALSE(Registration().RegisterControl(MString(kControl)));
  std::string path = MString(kControl).ToUtf8();
  EXPECT_EQ(world_.Reports(), (Strings{"1032 1 " + path + " 80004005", "18 0 ", "1032 2 " + path + " 8002801C"}));
  EXPECT_EQ(world_.modules.Log().back(), "Free " + path);
}

TEST_F(ControlSelfRegistrationTest, UnloadableOrEntrylessLibrariesAreForTheUser) {
  EXPECT_FALSE(Registration().RegisterControl(MString(u"C:\\missing.ocx")));
  world_.modules.AddModule(u"C:\\plain.dll", {{"DllGetClassObject", {0}}});
  EXPECT_FALSE(Registration().RegisterControl(MString(u"C:\\plain.dll")));
  EXPECT_EQ(world_.Reports(), (Strings{"1033 2 C:\\missing.ocx 7E", "1034 2 C:\\plain.dll 7F"}));
  EXPECT_EQ(world_.modules.LoadedCount(), 0u);
}

TEST_F(ControlSelfRegistrationTest, UnregisterIgnoresTheAnswerAndRemovesTheOldClassKeys) {
  world_.modules.AddModule(kControl, {{"DllUnregisterServer", {kFailed}}});
  world_.registry.CreateKey(RegistryHive::Machine, u"Software\\Classes\\TidewaterLumen.TidewaterLumen.3", 0);
  world_.registry.CreateKey(RegistryHive::Machine, u"Software\\Classes\\CLSID\\{8A008F5F-7E46-4C5C-99D0-516298B0AF2E}",
                            0);
  EXPECT_TRUE(Registration().UnregisterControl(MString(kControl)));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine, u"Software\\Classes\\TidewaterLumen.TidewaterLumen.3"));
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine,
                                         u"Software\\Classes\\CLSID\\{8A008F5F-7E46-4C5C-99D0-516298B0AF2E}"));
  EXPECT_EQ(world_.modules.Log()[2], "Call DllUnregisterServer -> 80004005");
  EXPECT_TRUE(world_.Reports().empty());
  EXPECT_TRUE(Registration().UnregisterControl(MString(u"C:\\missing.ocx")));
}

}  // namespace
