#pragma once
// "user32.dll" bound at run time (required). Upper-casing as the system does it.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kUser32Functions[] = {
    {"CharUpperBuffW", true},
};

class User32DllHelper : public DllFunctionTable<kUser32Functions> {
 public:
  static constexpr char kLibrary[] = "user32.dll";
  static constexpr bool kLibraryRequired = true;

  User32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto CharUpperBuffW() const {
    return Entry<decltype(&::CharUpperBuffW)>(DllFunctionIndex(kFunctions, "CharUpperBuffW"));
  }
};

}  // namespace SASM
