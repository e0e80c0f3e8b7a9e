#pragma once
// Font and small layout offsets by thread locale. They follow the locale, not
// the language of the strings: a Korean table under locale 1042 keeps "Arial".
// Callers read the thread locale at each use and pass it here.
#include <cstdint>

namespace SASM {

struct LocaleMetrics {
  // 0 marks the row of every locale not listed.
  uint32_t locale;
  // A narrow face name, as the font creation function takes it.
  const char* fontFace;
  int32_t fontSizeDelta;
  int32_t splashTextOffset;
  int32_t autoUpdateTextOffset;
  int32_t restartNoteOffset;
  int32_t updateChoiceTextOffset;
  int32_t updateChoiceFirstLabelOffset;
  int32_t updateChoiceSecondLabelOffset;

  // The row of exactly this locale, else the row of all others.
  static const LocaleMetrics& For(uint32_t threadLocale);
  int32_t FontSize(int32_t size) const { return size + fontSizeDelta; }
};

}  // namespace SASM
