#include "removal/UninstallCleanup.h"

#include <gtest/gtest.h>

#include "engine/InstallEngine.h"
#include "tests/native/RemovalTestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kCode[] = u"{11111111-2222-3333-4444-555555555555}";
constexpr char16_t kUninstall[] = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
constexpr char16_t kUninstallWow[] = u"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

class UninstallCleanupTest : public ::testing::Test {
 protected:
  void RemoveMsi() {
    UninstallCleanup(world_.GetPlatform())
        .RemoveMsiProduct({MString(kUninstall), MString(kUninstallWow)}, MString(u"C:\\Windows\\system32"),
                          MString(kCode));
  }
  void Register(const char16_t* prefix) {
    world_.registry.CreateKey(RegistryHive::Machine, std::u16string(prefix) + kCode, RegistryAccess::kAllAccess);
  }

  RemovalTestWorld world_;
};

TEST_F(UninstallCleanupTest, WithNeitherKeyTheToolIsNotStarted) {
  RemoveMsi();
  EXPECT_TRUE(world_.launcher.ShellRuns().empty());
}

TEST_F(UninstallCleanupTest, EitherKeyStartsTheToolQuietlyForTheProductCode) {
  const FakeProcessLauncher::ShellRun expected{u"C:\\Windows\\system32\\msiexec.exe", std::u16string(u"/q /X ") + kCode};
  Register(kUninstallWow);
  RemoveMsi();
  EXPECT_EQ(world_.launcher.ShellRuns(), std::vector<FakeProcessLauncher::ShellRun>{expected});

  RemovalTestWorld other;
  other.registry.CreateKey(RegistryHive::Machine, std::u16string(kUninstall) + kCode, RegistryAccess::kAllAccess);
  other.registry.CreateKey(RegistryHive::Machine, std::u16string(kUninstallWow) + kCode, RegistryAccess::kAllAccess);
  UninstallCleanup(other.GetPlatform())
      .RemoveMsiProduct({MString(kUninstall), MString(kUninstallWow)}, MString(u"C:\\Windows\\system32"),
                        MString(kCode));
  EXPECT_EQ(other.launcher.ShellRuns().size(), 1u);
  // Nothing here reports, whatever the tool did.
  EXPECT_TRUE(other.Reports().empty());
}

TEST_F(UninstallCleanupTest, KindsEntriesGoWithItsListedProducts) {
  MStringList& pepper = world_.shim->GetEngine()->guidsPepper;
  pepper.Add(MString(kCode));
  Register(kUninstall);
  world_.registry.SetString(RegistryHive::Machine,
                            u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI",
                            u"DisplayName", u"x");
  UninstallCleanup(world_.GetPlatform()).RemoveUninstallEntries(32768, *world_.shim->GetEngine());
  EXPECT_EQ(world_.launcher.ShellRuns().size(), 1u);
  EXPECT_FALSE(world_.registry.KeyExists(
      RegistryHive::Machine, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player PPAPI"));

  // The plug-in's list, where the PPAPI "Self" ids also land, is not consulted for PPAPI.
  RemovalTestWorld other;
  other.shim->GetEngine()->guidsPlugin.Add(MString(kCode));
  other.registry.CreateKey(RegistryHive::Machine, std::u16string(kUninstall) + kCode, RegistryAccess::kAllAccess);
  UninstallCleanup(other.GetPlatform()).RemoveUninstallEntries(32768, *other.shim->GetEngine());
  EXPECT_TRUE(other.launcher.ShellRuns().empty());
}

TEST_F(UninstallCleanupTest, ActiveXClassesCountAsGoneWhenDeletedOrAbsent) {
  UninstallCleanup cleanup(world_.GetPlatform());
  world_.registry.CreateKey(RegistryHive::Machine, u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}",
                            RegistryAccess::kAllAccess);
  EXPECT_TRUE(cleanup.RemoveActiveXClasses());
  EXPECT_FALSE(world_.registry.KeyExists(RegistryHive::Machine,
                                         u"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}"));
  world_.registry.FailKey(RegistryHive::Machine, u"Software\\Classes\\TypeLib\\{1292A30D-27C0-48F0-9A7C-EB8B6786C020}",
                          5);
  EXPECT_FALSE(cleanup.RemoveActiveXClasses());
}

}  // namespace
