#pragma once
// "efswrt.dll" bound at run time (optional: without it the helper stays available). Enterprise file protection. Named
// for enterprise data protection; the library that carries the function is "efswrt.dll".
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kEdpwin32Functions[] = {
    {"ProtectFileToEnterpriseIdentity", false},
};

class Edpwin32DllHelper : public DllFunctionTable<kEdpwin32Functions> {
 public:
  static constexpr char kLibrary[] = "efswrt.dll";
  static constexpr bool kLibraryRequired = false;

  using ProtectFileToEnterpriseIdentityFunction = HRESULT(WINAPI*)(const wchar_t* fileOrFolderPath,
                                                                   const wchar_t* identity);

  Edpwin32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto ProtectFileToEnterpriseIdentity() const {
    return Entry<ProtectFileToEnterpriseIdentityFunction>(
        DllFunctionIndex(kFunctions, "ProtectFileToEnterpriseIdentity"));
  }
};

}  // namespace SASM
