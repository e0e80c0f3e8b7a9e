#include "engine/win32/Edpwin32DllHelper.h"

namespace SASM {

Edpwin32DllHelper::Edpwin32DllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
