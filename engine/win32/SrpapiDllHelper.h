#pragma once
// "srpapi.dll" bound at run time (optional: without it the helper stays available). Enterprise identities of a token.
#include <iterator>

#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

class SrpapiDllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "srpapi.dll";
  static constexpr bool kLibraryRequired = false;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"SrpGetEnterpriseIds", false},
  };

  using SrpGetEnterpriseIdsFunction = HRESULT(WINAPI*)(HANDLE token, ULONG* numberOfBytes,
                                                       const wchar_t** enterpriseIds, ULONG* enterpriseIdCount);

  SrpapiDllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto SrpGetEnterpriseIds() const {
    return Entry<SrpGetEnterpriseIdsFunction>(DllFunctionIndex(kFunctions, "SrpGetEnterpriseIds"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
