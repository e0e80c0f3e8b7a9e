#pragma once
// "kernel32.dll" bound at run time (required). The kernel's file, process and path functions.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kKernel32Functions[] = {
    {"GetUserDefaultUILanguage", false},
    {"CreateDirectoryW", true},
    {"CreateFileW", true},
    {"CreateProcessW", true},
    {"DeleteFileW", true},
    {"GetModuleFileNameW", true},
    {"MoveFileExA", true},
    {"MoveFileExW", true},
    {"RemoveDirectoryW", true},
    {"GetSystemDirectoryW", true},
    {"ExpandEnvironmentStringsW", true},
    {"FindFirstFileW", true},
    {"FindNextFileW", true},
    {"GetFileAttributesW", true},
    {"SetFileAttributesW", true},
    {"GetFileAttributesExW", true},
    {"GetCurrentDirectoryW", true},
    {"SetCurrentDirectoryW", true},
    {"GetTempPathW", true},
    {"GetTempFileNameW", true},
    {"CopyFileW", true},
    {"GetFullPathNameW", true},
    {"GetVolumeInformationW", true},
    {"QueryFullProcessImageNameW", false},
};

class Kernel32DllHelper : public DllFunctionTable<kKernel32Functions> {
 public:
  static constexpr char kLibrary[] = "kernel32.dll";
  static constexpr bool kLibraryRequired = true;

  Kernel32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto GetUserDefaultUILanguage() const {
    return Entry<decltype(&::GetUserDefaultUILanguage)>(DllFunctionIndex(kFunctions, "GetUserDefaultUILanguage"));
  }
  auto CreateDirectoryW() const {
    return Entry<decltype(&::CreateDirectoryW)>(DllFunctionIndex(kFunctions, "CreateDirectoryW"));
  }
  auto CreateFileW() const { return Entry<decltype(&::CreateFileW)>(DllFunctionIndex(kFunctions, "CreateFileW")); }
  auto CreateProcessW() const {
    return Entry<decltype(&::CreateProcessW)>(DllFunctionIndex(kFunctions, "CreateProcessW"));
  }
  auto DeleteFileW() const { return Entry<decltype(&::DeleteFileW)>(DllFunctionIndex(kFunctions, "DeleteFileW")); }
  auto GetModuleFileNameW() const {
    return Entry<decltype(&::GetModuleFileNameW)>(DllFunctionIndex(kFunctions, "GetModuleFileNameW"));
  }
  auto MoveFileExA() const { return Entry<decltype(&::MoveFileExA)>(DllFunctionIndex(kFunctions, "MoveFileExA")); }
  auto MoveFileExW() const { return Entry<decltype(&::MoveFileExW)>(DllFunctionIndex(kFunctions, "MoveFileExW")); }
  auto RemoveDirectoryW() const {
    return Entry<decltype(&::RemoveDirectoryW)>(DllFunctionIndex(kFunctions, "RemoveDirectoryW"));
  }
  auto GetSystemDirectoryW() const {
    return Entry<decltype(&::GetSystemDirectoryW)>(DllFunctionIndex(kFunctions, "GetSystemDirectoryW"));
  }
  auto ExpandEnvironmentStringsW() const {
    return Entry<decltype(&::ExpandEnvironmentStringsW)>(DllFunctionIndex(kFunctions, "ExpandEnvironmentStringsW"));
  }
  auto FindFirstFileW() const {
    return Entry<decltype(&::FindFirstFileW)>(DllFunctionIndex(kFunctions, "FindFirstFileW"));
  }
  auto FindNextFileW() const {
    return Entry<decltype(&::FindNextFileW)>(DllFunctionIndex(kFunctions, "FindNextFileW"));
  }
  auto GetFileAttributesW() const {
    return Entry<decltype(&::GetFileAttributesW)>(DllFunctionIndex(kFunctions, "GetFileAttributesW"));
  }
  auto SetFileAttributesW() const {
    return Entry<decltype(&::SetFileAttributesW)>(DllFunctionIndex(kFunctions, "SetFileAttributesW"));
  }
  auto GetFileAttributesExW() const {
    return Entry<decltype(&::GetFileAttributesExW)>(DllFunctionIndex(kFunctions, "GetFileAttributesExW"));
  }
  auto GetCurrentDirectoryW() const {
    return Entry<decltype(&::GetCurrentDirectoryW)>(DllFunctionIndex(kFunctions, "GetCurrentDirectoryW"));
  }
  auto SetCurrentDirectoryW() const {
    return Entry<decltype(&::SetCurrentDirectoryW)>(DllFunctionIndex(kFunctions, "SetCurrentDirectoryW"));
  }
  auto GetTempPathW() const { return Entry<decltype(&::GetTempPathW)>(DllFunctionIndex(kFunctions, "GetTempPathW")); }
  auto GetTempFileNameW() const {
    return Entry<decltype(&::GetTempFileNameW)>(DllFunctionIndex(kFunctions, "GetTempFileNameW"));
  }
  auto CopyFileW() const { return Entry<decltype(&::CopyFileW)>(DllFunctionIndex(kFunctions, "CopyFileW")); }
  auto GetFullPathNameW() const {
    return Entry<decltype(&::GetFullPathNameW)>(DllFunctionIndex(kFunctions, "GetFullPathNameW"));
  }
  auto GetVolumeInformationW() const {
    return Entry<decltype(&::GetVolumeInformationW)>(DllFunctionIndex(kFunctions, "GetVolumeInformationW"));
  }
  auto QueryFullProcessImageNameW() const {
    return Entry<decltype(&::QueryFullProcessImageNameW)>(DllFunctionIndex(kFunctions, "QueryFullProcessImageNameW"));
  }
};

}  // namespace SASM
