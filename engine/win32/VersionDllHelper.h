#pragma once
// "version.dll" bound at run time (required). Version resources of files.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <winver.h>

namespace SASM {

inline constexpr DllFunction kVersionFunctions[] = {
    {"GetFileVersionInfoSizeW", true},
    {"GetFileVersionInfoW", true},
    {"VerQueryValueW", true},
};

class VersionDllHelper : public DllFunctionTable<kVersionFunctions> {
 public:
  static constexpr char kLibrary[] = "version.dll";
  static constexpr bool kLibraryRequired = true;

  VersionDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto GetFileVersionInfoSizeW() const {
    return Entry<decltype(&::GetFileVersionInfoSizeW)>(DllFunctionIndex(kFunctions, "GetFileVersionInfoSizeW"));
  }
  auto GetFileVersionInfoW() const {
    return Entry<decltype(&::GetFileVersionInfoW)>(DllFunctionIndex(kFunctions, "GetFileVersionInfoW"));
  }
  auto VerQueryValueW() const {
    return Entry<decltype(&::VerQueryValueW)>(DllFunctionIndex(kFunctions, "VerQueryValueW"));
  }
};

}  // namespace SASM
