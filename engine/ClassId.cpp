#include "engine/ClassId.h"

namespace SASM {

std::string ClassId::Text() const {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "{";
  for (int8_t position : kTextOrder) {
    if (position < 0) {
      text += '-';
      continue;
    }
    uint8_t value = bytes[static_cast<size_t>(position)];
    text += kDigits[value >> 4];
    text += kDigits[value & 15];
  }
  return text + "}";
}

std::u16string ClassId::WideText() const {
  std::string text = Text();
  return std::u16string(text.begin(), text.end());
}

}  // namespace SASM
