#pragma once
// "shell32.dll" bound at run time (required). Shell folders and elevated starts.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <shellapi.h>
#include <shlobj.h>
// shellapi.h brings the macro back; ISystem has a member of that name.
#undef ShellExecute

namespace SASM {

inline constexpr DllFunction kShell32Functions[] = {
    {"SHGetFolderPathW", false},
    {"ShellExecuteExW", true},
};

class Shell32DllHelper : public DllFunctionTable<kShell32Functions> {
 public:
  static constexpr char kLibrary[] = "shell32.dll";
  static constexpr bool kLibraryRequired = true;

  Shell32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto SHGetFolderPathW() const {
    return Entry<decltype(&::SHGetFolderPathW)>(DllFunctionIndex(kFunctions, "SHGetFolderPathW"));
  }
  auto ShellExecuteExW() const {
    return Entry<decltype(&::ShellExecuteExW)>(DllFunctionIndex(kFunctions, "ShellExecuteExW"));
  }
};

}  // namespace SASM
