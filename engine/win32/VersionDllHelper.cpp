#include "engine/win32/VersionDllHelper.h"

namespace SASM {

VersionDllHelper::VersionDllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
