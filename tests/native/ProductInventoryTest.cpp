#include <gtest/gtest.h>

#include "install/ProductInventory.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr RegistryHive kMachine = RegistryHive::Machine;
constexpr RegistryHive kUser = RegistryHive::CurrentUser;

class ProductInventoryTest : public WorldTest {
 protected:
  ProductInventory Inventory() { return ProductInventory(*world_.host, world_.registry); }
};

TEST_F(ProductInventoryTest, InstalledVersionStatesAgainstThisBuildAndAMissingVersionIsReported) {
  for (auto [version, state] :
       {std::pair{u"28.0.0.126", 2}, {u"28.0.0.125", 1}, {u"28.1.0.0", 3}, {u"29", 3}, {u"28", 1}, {u"", 1}}) {
    world_.registry.SetString(kMachine, u"Software\\Halcyonics\\LumenPlayerPlugin", u"Version", version);
    EXPECT_EQ(Inventory().CompareInstalledVersion(16), state) << MString(version).ToUtf8();
  }
  EXPECT_TRUE(world_.Reports().empty());
  EXPECT_EQ(Inventory().CompareInstalledVersion(8), ProductInventory::kNotInstalled);
  EXPECT_EQ(world_.Reports(), Strings{"1036 1 Software\\Halcyonics\\LumenPlayerActiveX/Version 2"});
}

TEST_F(ProductInventoryTest, SafeVersionRefusesOnlyARevisionAboveThisBuildAndGoesWithTheProductKey) {
  EXPECT_TRUE(Inventory().IsSafeVersion()) << "an unreadable value allows the install";
  world_.registry.SetDword(kMachine, ProductInventory::kSafeVersionsKey, u"28.0", 126);
  EXPECT_TRUE(Inventory().IsSafeVersion());
  world_.registry.SetDword(kMachine, ProductInventory::kSafeVersionsKey, u"28.0", 127);
  EXPECT_FALSE(Inventory().IsSafeVersion());

  world_.registry.SetString(kMachine, u"Software\\Halcyonics\\LumenPlayerPlugin\\Sub", u"v", u"x");
  world_.registry.SetDword(kMachine, ProductInventory::kSafeVersionsKey, u"28.0", 1);
  EXPECT_TRUE(Inventory().DeleteProductKey(16));
  EXPECT_TRUE(Inventory().DeleteSafeVersions());
  EXPECT_FALSE(world_.registry.KeyExists(kMachine, u"Software\\Halcyonics\\LumenPlayerPlugin"));
  EXPECT_FALSE(Inventory().DeleteProductKey(16));
  EXPECT_EQ(world_.Reports().back(), "1037 1 Software\\Halcyonics\\LumenPlayerPlugin/ 2");
}

TEST_F(ProductInventoryTest, ReleaseTypeIsDecidedByTheLastKindSet) {
  world_.registry.SetDword(kMachine, u"SOFTWARE\\Halcyonics\\LumenPlayerActiveXReleaseType", u"Release", 1);
  world_.registry.SetDword(kMachine, u"SOFTWARE\\Halcyonics\\LumenPlayerPepperReleaseType", u"Release", 0);
  EXPECT_TRUE(Inventory().ReleaseTypeMatches(8, 1));
  EXPECT_FALSE(Inventory().ReleaseTypeMatches(8 | 32768, 1));
  EXPECT_TRUE(Inventory().ReleaseTypeMatches(8 | 32768, 0));
  EXPECT_TRUE(Inventory().ReleaseTypeMatches(8 | 16, 7)) << "the plug-in's key is missing: anything matches";
}

TEST_F(ProductInventoryTest, ReleaseTypeKeyWithoutItsValueReadsAsZero) {
  world_.registry.CreateKey(kMachine, u"SOFTWARE\\Halcyonics\\LumenPlayerPluginReleaseType",
                            RegistryAccess::kAllAccess);
  EXPECT_TRUE(Inventory().ReleaseTypeMatches(16, 0));
  EXPECT_FALSE(Inventory().ReleaseTypeMatches(16, 1));
  EXPECT_EQ(world_.Codes(), (CodeList{1036, 1036}));
}

TEST_F(ProductInventoryTest, CleanRegistryCountsFiveStepsAndTheCodeStoreForActiveXButNotThePlugInsOldEntry) {
  // What a registration of the kind leaves for the clean-up to find.
  auto fill = [](TestWorld& world, const char16_t* word) {
    std::u16string product = std::u16string(u"Software\\Halcyonics\\LumenPlayer") + word;
    world.registry.SetString(kUser, u"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce", u"LumenPlayerUpdate",
                             u"x");
    world.registry.SetString(kUser, product, u"v", u"x");
    world.registry.SetString(kUser, u"Software\\Halcyonics\\LumenPlayer", u"LumenPlayerVersion", u"x");
    world.registry.SetString(kUser, u"Software\\Halcyonics\\LumenPlayer", u"TwlInstall", u"x");
    world.registry.CreateKey(kMachine, product + u"ReleaseType", 0);
  };
  const char16_t kCodeStore[] =
      u"Software\\Microsoft\\Code Store Database\\Distribution Units\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}";
  fill(world_, u"ActiveX");
  EXPECT_FALSE(Inventory().CleanRegistry(8)) << "the code store entry is missing and counts";
  EXPECT_EQ(world_.Reports(), Strings{"1037 1 " + MString(kCodeStore).ToUtf8() + "/ 2"});
  EXPECT_FALSE(world_.registry.KeyExists(kUser, u"Software\\Halcyonics\\LumenPlayerActiveX"));
  fill(world_, u"ActiveX");
  world_.registry.CreateKey(kMachine, kCodeStore, 0);
  EXPECT_TRUE(Inventory().CleanRegistry(8));

  TestWorld plugin;
  fill(plugin, u"Plugin");
  EXPECT_TRUE(ProductInventory(*plugin.host, plugin.registry).CleanRegistry(16));
  EXPECT_EQ(plugin.Reports(),
            Strings{"1037 1 SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player Plugin/ 2"});
}

TEST_F(ProductInventoryTest, CleanRegistryGoesOnAfterEachFailure) {
  EXPECT_FALSE(Inventory().CleanRegistry(32768));
  EXPECT_EQ(world_.Codes(), CodeList(6, 1037));
  EXPECT_EQ(world_.Reports().back(),
            "1037 1 SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player Pepper/ 2");
}

}  // namespace
