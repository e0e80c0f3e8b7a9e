#include "engine/win32/Dinput8DllHelper.h"

namespace SASM {

Dinput8DllHelper::Dinput8DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
