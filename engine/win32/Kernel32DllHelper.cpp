#include "engine/win32/Kernel32DllHelper.h"

namespace SASM {

Kernel32DllHelper::Kernel32DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
