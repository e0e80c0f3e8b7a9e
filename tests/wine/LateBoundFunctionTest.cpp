// One-off bindings by name, from the System folder of the prefix.
#include "engine/win32/LateBoundFunction.h"

#include <gtest/gtest.h>

#include <shlobj.h>

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

}  // namespace
