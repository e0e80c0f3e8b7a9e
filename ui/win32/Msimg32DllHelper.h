#pragma once
// "msimg32.dll" bound at run time: the blending that draw mode 2 uses.
#include "engine/win32/DynamicLoadLibraryHelper.h"

namespace SASM {

inline constexpr DllFunction kMsimg32Functions[] = {
    {"AlphaBlend", false},
};

class Msimg32DllHelper : public DllFunctionTable<kMsimg32Functions> {
 public:
  static constexpr char kLibrary[] = "msimg32.dll";
  static constexpr bool kLibraryRequired = false;
  using AlphaBlendFn = BOOL(WINAPI*)(HDC, int, int, int, int, HDC, int, int, int, int, BLENDFUNCTION);

  Msimg32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  AlphaBlendFn AlphaBlend() const { return Entry<AlphaBlendFn>(DllFunctionIndex(kFunctions, "AlphaBlend")); }
};

}  // namespace SASM
