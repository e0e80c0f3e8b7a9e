#include <gtest/gtest.h>

#include "engine/InstallEngine.h"
#include "removal/UninstallCleanup.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kCode[] = u"{11111111-2222-3333-4444-555555555555}";
const std::u16string kUninstall = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
const std::u16string kUninstallWow = u"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

void RemoveMsi(TestWorld& world) {
  UninstallCleanup(world.GetPlatform())
      .RemoveMsiProduct({MString(std::u16string_view(kUninstall)), MString(std::u16string_view(kUninstallWow))},
                        MString(u"C:\\Windows\\system32"), MString(kCode));
}
void Register(TestWorld& world, const std::u16string& prefix) {
  world.registry.CreateKey(RegistryHive::Machine, prefix + kCode, RegistryAccess::kAllAccess);
}

using UninstallCleanupTest = WorldTest;

TEST_F(UninstallCleanupTest, EitherKeyStartsTheToolQuietlyForTheProductCodeAndNeitherLeavesItAlone) {
  RemoveMsi(world_);
  EXPECT_TRUE(world_.launcher.ShellRuns().empty());
  Register(world_, kUninstallWow);
  RemoveMsi(world_);
  EXPECT_EQ(world_.launcher.ShellRuns(),
            (std::vector<FakeProcessLauncher::ShellRun>{
                {u"C:\\Windows\\system32\\msiexec.exe", u"/q /X " + std::u16string(kCode)}}));
}

TEST_F(UninstallCleanupTest, KindsEntriesGoWithItsListedProducts) {
  world_.shim->GetEngine()->guidsPepper.Add(MString(kCode));
  Register(world_, kUninstall);
  world_.registry.SetString(RegistryHive::Machine, kUninstall + u"Corva Lumen Player PPAPI", u"DisplayName", u"x");
  UninstallCleanup(world_.GetPlatform()).RemoveUninstallEntries(32768, *world_.shim->GetEngine());
  EXPECT_EQ(world_.launcher.ShellRuns().size(), 1u);
  EXPECT_FALSE(world_.KeyExists(kUninstall + u"Corva Lumen Player PPAPI"));

  // The plug-in's list, where the PPAPI "Self" ids also land, is not consulted for PPAPI.
  TestWorld other;
  other.shim->GetEngine()->guidsPlugin.Add(MString(kCode));
  Register(other, kUninstall);
  UninstallCleanup(other.GetPlatform()).RemoveUninstallEntries(32768, *other.shim->GetEngine());
  EXPECT_TRUE(other.launcher.ShellRuns().empty());
}

TEST_F(UninstallCleanupTest, ActiveXClassesCountAsGoneWhenDeletedOrAbsent) {
  const char16_t kClass[] = u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}";
  UninstallCleanup cleanup(world_.GetPlatform());
  world_.registry.CreateKey(RegistryHive::Machine, kClass, RegistryAccess::kAllAccess);
  EXPECT_TRUE(cleanup.RemoveActiveXClasses());
  EXPECT_FALSE(world_.KeyExists(kClass));
  world_.registry.FailKey(RegistryHive::Machine, u"Software\\Classes\\TypeLib\\{1292A30D-27C0-48F0-9A7C-EB8B6786C020}",
                          5);
  EXPECT_FALSE(cleanup.RemoveActiveXClasses());
}

}  // namespace
