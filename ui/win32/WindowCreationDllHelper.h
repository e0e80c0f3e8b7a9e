#pragma once
// "user32.dll" by full path for the top-level window's creation, so that the
// window never comes from a user32 found on the search path.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kWindowCreationFunctions[] = {
    {"CreateWindowExW", true},
};

class WindowCreationDllHelper : public DllFunctionTable<kWindowCreationFunctions> {
 public:
  static constexpr char kLibrary[] = "user32.dll";
  static constexpr bool kLibraryRequired = true;

  WindowCreationDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto CreateWindowExW() const {
    return Entry<decltype(&::CreateWindowExW)>(DllFunctionIndex(kFunctions, "CreateWindowExW"));
  }
};

}  // namespace SASM
