// The run-time helpers over the real system directory of the prefix.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "engine/win32/Advapi32DllHelper.h"
#include "engine/win32/Dinput8DllHelper.h"
#include "engine/win32/Edpwin32DllHelper.h"
#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/PsapiDllHelper.h"
#include "engine/win32/Shell32DllHelper.h"
#include "engine/win32/SrpapiDllHelper.h"
#include "engine/win32/User32DllHelper.h"
#include "engine/win32/VersionDllHelper.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using WineTest::Lower;
using WineTest::ModuleFile;

std::wstring Widen(const char* text) { return std::wstring(text, text + strlen(text)); }

template <typename Helper>
class PresentLibraryHelper : public ::testing::Test {};
using PresentHelpers = ::testing::Types<Kernel32DllHelper, User32DllHelper, Advapi32DllHelper, VersionDllHelper,
                                        Shell32DllHelper, Dinput8DllHelper, PsapiDllHelper>;
TYPED_TEST_SUITE(PresentLibraryHelper, PresentHelpers);

TYPED_TEST(PresentLibraryHelper, LoadsFromTheSystemDirectoryAndBindsItsWholeTable) {
  TypeParam helper;
  ASSERT_NE(helper.library(), nullptr);
  EXPECT_EQ(Lower(ModuleFile(helper.library())),
            Lower(WineTest::SystemDirectory() + L"\\" + Widen(TypeParam::kLibrary)));
  EXPECT_EQ(helper.available(), 1);
  for (size_t i = 0; i < std::size(TypeParam::kFunctions); ++i) {
    const DllFunction& function = TypeParam::kFunctions[i];
    EXPECT_EQ(helper.Function(i), GetProcAddress(helper.library(), function.name)) << function.name;
    if (function.required) {
      EXPECT_NE(helper.Function(i), nullptr) << function.name;
    }
  }
}

TEST(DynamicLoadLibraryHelper, MissingLibrariesAndFunctionsClearAvailableOnlyWhenRequired) {
  // This prefix has neither optional library; a system that has them would bind the function.
  SrpapiDllHelper srpapi;
  EXPECT_EQ(srpapi.library(), nullptr);
  EXPECT_EQ(srpapi.available(), 1);
  EXPECT_EQ(srpapi.SrpGetEnterpriseIds(), nullptr);
  EXPECT_EQ(Edpwin32DllHelper().available(), 1);

  DynamicLoadLibraryHelper helper("kernel32.dll", true, false);
  EXPECT_EQ(helper.Resolve("NoSuchOptionalFunction", false), nullptr);
  EXPECT_EQ(helper.available(), 1);
  EXPECT_EQ(helper.Resolve("NoSuchRequiredFunction", true), nullptr);
  EXPECT_EQ(helper.available(), 0);
  EXPECT_NE(helper.Resolve("CreateFileW", true), nullptr);

  DynamicLoadLibraryHelper missing("lumen-no-such-library.dll", true, false);
  EXPECT_EQ(missing.available(), 0);
  EXPECT_EQ(missing.Resolve("CreateFileW", false), nullptr);
  EXPECT_EQ(DynamicLoadLibraryHelper("lumen-no-such-library.dll", false, false).available(), 1);
}

TEST(DynamicLoadLibraryHelper, NeverLoadsFromTheSearchPathAndFreesWhatItLoaded) {
  // The module sits beside this program, first on the search path, but not in the system directory.
  ASSERT_TRUE(WineTest::FileExists(WineTest::ModulePath()));
  DynamicLoadLibraryHelper beside("LumenUtil.dll", true, false);
  EXPECT_EQ(beside.library(), nullptr);
  EXPECT_EQ(beside.available(), 0);

  ASSERT_EQ(GetModuleHandleW(L"mscms.dll"), nullptr) << "another test keeps mscms.dll loaded";
  {
    DynamicLoadLibraryHelper helper("mscms.dll", true, false);
    ASSERT_NE(helper.library(), nullptr);
    EXPECT_EQ(GetModuleHandleW(L"mscms.dll"), helper.library());
  }
  EXPECT_EQ(GetModuleHandleW(L"mscms.dll"), nullptr);
}

// Run in a fresh copy of this program, where nothing has loaded dinput8.dll yet.
class ModuleProcessHelpersProbe : public ::testing::Test {
 public:
  void TestBody() override {
    ASSERT_EQ(GetModuleHandleW(L"dinput8.dll"), nullptr);
    HMODULE module = LoadLibraryW(WineTest::ModulePath().c_str());
    ASSERT_NE(module, nullptr);
    // Loading the module, before any Start, builds its process-wide helpers.
    EXPECT_NE(GetModuleHandleW(L"dinput8.dll"), nullptr);
    FreeLibrary(module);
    // Unloading it destroys them, which frees their libraries.
    EXPECT_EQ(GetModuleHandleW(L"dinput8.dll"), nullptr);
  }
};

constexpr char kProbeVariable[] = "LUMEN_PROCESS_HELPERS_PROBE";

const bool kProbeRegistered = [] {
  if (getenv(kProbeVariable)) {
    ::testing::RegisterTest("ModuleProcessHelpersProbe", "InFreshProcess", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> ::testing::Test* { return new ModuleProcessHelpersProbe; });
  }
  return true;
}();

TEST(DynamicLoadLibraryHelper, ModuleBuildsItsProcessHelpersOnLoadAndFreesThemOnUnload) {
  std::wstring command = L"\"" + ModuleFile(nullptr) + L"\" --gtest_filter=ModuleProcessHelpersProbe.*";
  SetEnvironmentVariableA(kProbeVariable, "1");
  DWORD exitCode = WineTest::RunToEnd(command, 60000);
  SetEnvironmentVariableA(kProbeVariable, nullptr);
  EXPECT_EQ(exitCode, 0u);
}

}  // namespace
