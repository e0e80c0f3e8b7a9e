#pragma once
// "psapi.dll" bound at run time (optional: a missing library or function means
// there is nothing to list). Processes and the modules they have loaded.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <psapi.h>

// The SDK maps these names to their kernel32 twins; here they name psapi's own.
#undef EnumProcesses
#undef EnumProcessModules
#undef GetModuleBaseNameW
#undef GetModuleFileNameExW

namespace SASM {

inline constexpr DllFunction kPsapiFunctions[] = {
    {"EnumProcesses", false},
    {"EnumProcessModules", false},
    {"GetModuleBaseNameW", false},
    {"GetModuleFileNameExW", false},
};

class PsapiDllHelper : public DllFunctionTable<kPsapiFunctions> {
 public:
  static constexpr char kLibrary[] = "psapi.dll";
  static constexpr bool kLibraryRequired = false;

  using EnumProcessesFunction = BOOL(WINAPI*)(DWORD* ids, DWORD bytes, DWORD* bytesReturned);
  using EnumProcessModulesFunction = BOOL(WINAPI*)(HANDLE process, HMODULE* modules, DWORD bytes, DWORD* bytesNeeded);
  using ModuleTextFunction = DWORD(WINAPI*)(HANDLE process, HMODULE module, wchar_t* text, DWORD size);

  PsapiDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto EnumProcesses() const { return Entry<EnumProcessesFunction>(DllFunctionIndex(kFunctions, "EnumProcesses")); }
  auto EnumProcessModules() const {
    return Entry<EnumProcessModulesFunction>(DllFunctionIndex(kFunctions, "EnumProcessModules"));
  }
  auto GetModuleBaseNameW() const {
    return Entry<ModuleTextFunction>(DllFunctionIndex(kFunctions, "GetModuleBaseNameW"));
  }
  auto GetModuleFileNameExW() const {
    return Entry<ModuleTextFunction>(DllFunctionIndex(kFunctions, "GetModuleFileNameExW"));
  }
};

}  // namespace SASM
