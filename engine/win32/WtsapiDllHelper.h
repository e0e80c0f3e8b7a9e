#pragma once
// "wtsapi32.dll" bound at run time (required, as are its four functions). Terminal sessions and their users.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <wtsapi32.h>

namespace SASM {

inline constexpr DllFunction kWtsapiFunctions[] = {
    {"WTSFreeMemory", true},
    {"WTSQuerySessionInformationW", true},
    {"WTSQuerySessionInformationA", true},
    {"WTSEnumerateSessionsA", true},
};

class WtsapiDllHelper : public DllFunctionTable<kWtsapiFunctions> {
 public:
  static constexpr char kLibrary[] = "wtsapi32.dll";
  static constexpr bool kLibraryRequired = true;

  WtsapiDllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto WTSFreeMemory() const {
    return Entry<decltype(&::WTSFreeMemory)>(DllFunctionIndex(kFunctions, "WTSFreeMemory"));
  }
  auto WTSQuerySessionInformationW() const {
    return Entry<decltype(&::WTSQuerySessionInformationW)>(DllFunctionIndex(kFunctions, "WTSQuerySessionInformationW"));
  }
  auto WTSQuerySessionInformationA() const {
    return Entry<decltype(&::WTSQuerySessionInformationA)>(DllFunctionIndex(kFunctions, "WTSQuerySessionInformationA"));
  }
  auto WTSEnumerateSessionsA() const {
    return Entry<decltype(&::WTSEnumerateSessionsA)>(DllFunctionIndex(kFunctions, "WTSEnumerateSessionsA"));
  }
};

}  // namespace SASM
