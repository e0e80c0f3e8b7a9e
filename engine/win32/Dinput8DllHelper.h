#pragma once
// "dinput8.dll" bound at run time (required). Game controller enumeration.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <unknwn.h>

namespace SASM {

inline constexpr DllFunction kDinput8Functions[] = {
    {"DirectInput8Create", false},
};

class Dinput8DllHelper : public DllFunctionTable<kDinput8Functions> {
 public:
  static constexpr char kLibrary[] = "dinput8.dll";
  static constexpr bool kLibraryRequired = true;

  using DirectInput8CreateFunction = HRESULT(WINAPI*)(HINSTANCE instance, DWORD version, REFIID interfaceId,
                                                      void** object, IUnknown* outer);

  Dinput8DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto DirectInput8Create() const {
    return Entry<DirectInput8CreateFunction>(DllFunctionIndex(kFunctions, "DirectInput8Create"));
  }
};

}  // namespace SASM
