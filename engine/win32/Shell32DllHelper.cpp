#include "engine/win32/Shell32DllHelper.h"

namespace SASM {

Shell32DllHelper::Shell32DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
