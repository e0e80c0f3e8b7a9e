#pragma once
// "dinput8.dll" bound at run time (required). Game controller enumeration.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <unknwn.h>

#include <iterator>

namespace SASM {

class Dinput8DllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "dinput8.dll";
  static constexpr bool kLibraryRequired = true;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"DirectInput8Create", false},
  };

  using DirectInput8CreateFunction = HRESULT(WINAPI*)(HINSTANCE instance, DWORD version, REFIID interfaceId,
                                                      void** object, IUnknown* outer);

  Dinput8DllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto DirectInput8Create() const {
    return Entry<DirectInput8CreateFunction>(DllFunctionIndex(kFunctions, "DirectInput8Create"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
