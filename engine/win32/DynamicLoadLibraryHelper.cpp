#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <string>

namespace SASM {
namespace {

// What a helper built with the bitness flag puts before the library name; nothing in this build.
constexpr char kBitnessPrefix[] = "";

}  // namespace

DynamicLoadLibraryHelper::DynamicLoadLibraryHelper(const char* libraryName, bool libraryRequired,
                                                   bool bitnessFlag) {
  char directory[MAX_PATH];
  UINT length = GetSystemDirectoryA(directory, sizeof(directory));
  if (length == 0 || length >= sizeof(directory) || libraryName == nullptr) return;
  std::string path(directory, length);
  path += '\\';
  if (bitnessFlag) path += kBitnessPrefix;
  path += libraryName;
  // By full path only: a library never comes from the search path.
  library_ = LoadLibraryA(path.c_str());
  if (libraryRequired && !HasLibrary()) available_ = 0;
}

DynamicLoadLibraryHelper::~DynamicLoadLibraryHelper() {
  if (HasLibrary()) FreeLibrary(library_);
}

FARPROC DynamicLoadLibraryHelper::Resolve(const char* name, bool required) {
  FARPROC function = HasLibrary() ? GetProcAddress(library_, name) : nullptr;
  if (required && function == nullptr) available_ = 0;
  return function;
}

}  // namespace SASM
