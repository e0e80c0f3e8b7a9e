#include "engine/win32/SrpapiDllHelper.h"

namespace SASM {

SrpapiDllHelper::SrpapiDllHelper() : DynamicLoadLibraryHelper(kLibrary, kLibraryRequired, false) {
  ResolveTable(kFunctions, functions_);
}

}  // namespace SASM
