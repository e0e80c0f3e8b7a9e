#pragma once
// "OLEAcc.dll" bound at run time: hands a native child's accessible object to
// the client that asked for it.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kOleAccFunctions[] = {
    {"LresultFromObject", false},
};

class OleAccDllHelper : public DllFunctionTable<kOleAccFunctions> {
 public:
  static constexpr char kLibrary[] = "OLEAcc.dll";
  static constexpr bool kLibraryRequired = false;
  using LresultFromObjectFn = LRESULT(WINAPI*)(REFIID riid, WPARAM wParam, IUnknown* object);

  OleAccDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  LresultFromObjectFn LresultFromObject() const {
    return Entry<LresultFromObjectFn>(DllFunctionIndex(kOleAccFunctions, "LresultFromObject"));
  }
};

}  // namespace SASM
