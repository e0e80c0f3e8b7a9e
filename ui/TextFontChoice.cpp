#include "ui/TextFontChoice.h"

namespace SASM {

TextFontChoice TextFontChoice::ForLocale(uint32_t locale, int32_t size) {
  switch (locale) {
    case 1028:
      return {"Mingliu", size - 3};
    case 1041:
      return {"Mincho", size - 2};
    case 2052:
      return {"SimSun", size - 3};
    default:
      return {"Arial", size};
  }
}

}  // namespace SASM
