#pragma once
// "version.dll" bound at run time (required). Version resources of files.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <winver.h>

#include <iterator>

namespace SASM {

class VersionDllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "version.dll";
  static constexpr bool kLibraryRequired = true;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"GetFileVersionInfoSizeW", true},
      {"GetFileVersionInfoW", true},
      {"VerQueryValueW", true},
  };

  VersionDllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto GetFileVersionInfoSizeW() const {
    return Entry<decltype(&::GetFileVersionInfoSizeW)>(DllFunctionIndex(kFunctions, "GetFileVersionInfoSizeW"));
  }
  auto GetFileVersionInfoW() const {
    return Entry<decltype(&::GetFileVersionInfoW)>(DllFunctionIndex(kFunctions, "GetFileVersionInfoW"));
  }
  auto VerQueryValueW() const {
    return Entry<decltype(&::VerQueryValueW)>(DllFunctionIndex(kFunctions, "VerQueryValueW"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
