#include "engine/win32/User32DllHelper.h"

namespace SASM {

User32DllHelper::User32DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
