#pragma once
// The face and height of a text area's fonts for the thread's locale.
#include <cstdint>

namespace SASM {

struct TextFontChoice {
  const char* face;
  int32_t height;

  static TextFontChoice ForLocale(uint32_t locale, int32_t size);
};

}  // namespace SASM
