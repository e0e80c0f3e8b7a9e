#pragma once
// Rules that turn a looked-up text into what the installer shows: the "^"
// placeholder and the window width that the table itself carries.
#include <cstdint>

#include "engine/MString.h"

namespace SASM {

class LocalizedText {
 public:
  // The text whose digits give the window's width: wider in some languages.
  static constexpr uint32_t kWidthId = 71;
  // The width when that text holds no number.
  static constexpr uint32_t kFallbackWidth = 450;
  // The version that strings 7 and 29 name.
  static constexpr char16_t kProductVersion[] = u"28.0";

  // Each "^" in text becomes value; the value itself is not scanned again.
  static MString Fill(const MString& text, const MString& value);
  // The leading decimal digits of the width text; 0 (no digits) gives the fallback width.
  static uint32_t WindowWidth(const MString& widthText);
};

}  // namespace SASM
