#pragma once
// "user32.dll" bound at run time (required). Upper-casing as the system does it.
#include <iterator>

#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

class User32DllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "user32.dll";
  static constexpr bool kLibraryRequired = true;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"CharUpperBuffW", true},
  };

  User32DllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto CharUpperBuffW() const {
    return Entry<decltype(&::CharUpperBuffW)>(DllFunctionIndex(kFunctions, "CharUpperBuffW"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
