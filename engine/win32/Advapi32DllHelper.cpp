#include "engine/win32/Advapi32DllHelper.h"

namespace SASM {

Advapi32DllHelper::Advapi32DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
