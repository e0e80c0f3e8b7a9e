#pragma once
// "efswrt.dll" bound at run time (optional: without it the helper stays available). Enterprise file protection. Named
// for enterprise data protection; the library that carries the function is "efswrt.dll".
#include <iterator>

#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

class Edpwin32DllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "efswrt.dll";
  static constexpr bool kLibraryRequired = false;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"ProtectFileToEnterpriseIdentity", false},
  };

  using ProtectFileToEnterpriseIdentityFunction = HRESULT(WINAPI*)(const wchar_t* fileOrFolderPath,
                                                                   const wchar_t* identity);

  Edpwin32DllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto ProtectFileToEnterpriseIdentity() const {
    return Entry<ProtectFileToEnterpriseIdentityFunction>(
        DllFunctionIndex(kFunctions, "ProtectFileToEnterpriseIdentity"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
