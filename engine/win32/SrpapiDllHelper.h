#pragma once
// "srpapi.dll" bound at run time (optional: without it the helper stays available). Enterprise identities of a token.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kSrpapiFunctions[] = {
    {"SrpGetEnterpriseIds", false},
};

class SrpapiDllHelper : public DllFunctionTable<kSrpapiFunctions> {
 public:
  static constexpr char kLibrary[] = "srpapi.dll";
  static constexpr bool kLibraryRequired = false;

  using SrpGetEnterpriseIdsFunction = HRESULT(WINAPI*)(HANDLE token, ULONG* numberOfBytes,
                                                       const wchar_t** enterpriseIds, ULONG* enterpriseIdCount);

  SrpapiDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto SrpGetEnterpriseIds() const {
    return Entry<SrpGetEnterpriseIdsFunction>(DllFunctionIndex(kFunctions, "SrpGetEnterpriseIds"));
  }
};

}  // namespace SASM
