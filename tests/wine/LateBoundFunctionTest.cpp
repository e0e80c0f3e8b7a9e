// One-off bindings by name, from the System folder of the prefix.
#include "engine/win32/LateBoundFunction.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include "engine/win32/Win32Registry.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::Lower;
using WineTest::ModuleFile;

TEST(LateBoundFunction, BindsFromTheSystemFolderOnceAndBareNamesNeverFromBesideTheProgram) {
  LateBoundFunction alphaBlend(L"Msimg32.dll", "AlphaBlend");
  FARPROC first = alphaBlend.Get();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(Lower(ModuleFile(alphaBlend.Module())), Lower(WineTest::Folder(CSIDL_SYSTEM) + L"\\msimg32.dll"));
  EXPECT_EQ(alphaBlend.Get(), first);
  LateBoundFunction missing(L"shlwapi.dll", "LumenNoSuchExport");
  EXPECT_EQ(missing.Get(), nullptr);
  EXPECT_NE(missing.Module(), nullptr);

  // Beside this program, not in the System folder: a bare name must not find it.
  LateBoundFunction beside(L"LumenUtil.dll", "Start");
  EXPECT_EQ(beside.Get(), nullptr);
  EXPECT_EQ(beside.Module(), nullptr);
  // A name with a path is taken as it stands.
  HMODULE module = LateBoundFunction::LoadShellLibrary(WineTest::ModulePath().c_str());
  ASSERT_NE(module, nullptr);
  FreeLibrary(module);
}

TEST(LateBoundFunction, RegistryTreeDeleteYieldsMinusOneWithoutTheShellFunction) {
  constexpr char16_t kKey[] = u"Software\\LumenUtilTests\\UnboundDelete";
  LateBoundFunction unbound(L"shlwapi.dll", "LumenNoSuchDeleteKey");
  Win32Registry registry(unbound);
  ASSERT_EQ(registry.CreateKey(RegistryHive::CurrentUser, kKey, RegistryAccess::kAllAccess), 0);
  EXPECT_EQ(registry.DeleteTree(RegistryHive::CurrentUser, kKey), -1);
  EXPECT_EQ(registry.OpenKey(RegistryHive::CurrentUser, kKey, RegistryAccess::kRead), 0);
  // The process's own binding finds SHDeleteKeyW and removes it.
  EXPECT_NE(Win32Registry::DeleteKeyFunction().Get(), nullptr);
  EXPECT_EQ(Win32Registry().DeleteTree(RegistryHive::CurrentUser, u"Software\\LumenUtilTests"), 0);
  EXPECT_EQ(registry.OpenKey(RegistryHive::CurrentUser, kKey, RegistryAccess::kRead), 2);
}

}  // namespace
