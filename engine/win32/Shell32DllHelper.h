#pragma once
// "shell32.dll" bound at run time (required). Shell folders and elevated starts.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <shellapi.h>
#include <shlobj.h>
// shellapi.h brings the macro back; ISystem has a member of that name.
#undef ShellExecute

#include <iterator>

namespace SASM {

class Shell32DllHelper : public DynamicLoadLibraryHelper {
 public:
  static constexpr char kLibrary[] = "shell32.dll";
  static constexpr bool kLibraryRequired = true;
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr DllFunction kFunctions[] = {
      {"SHGetFolderPathW", false},
      {"ShellExecuteExW", true},
  };

  Shell32DllHelper();

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

  auto SHGetFolderPathW() const {
    return Entry<decltype(&::SHGetFolderPathW)>(DllFunctionIndex(kFunctions, "SHGetFolderPathW"));
  }
  auto ShellExecuteExW() const {
    return Entry<decltype(&::ShellExecuteExW)>(DllFunctionIndex(kFunctions, "ShellExecuteExW"));
  }

 private:
  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

  FARPROC functions_[std::size(kFunctions)];
};

}  // namespace SASM
