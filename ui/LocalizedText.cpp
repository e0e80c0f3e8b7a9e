#include "ui/LocalizedText.h"

namespace SASM {

MString LocalizedText::Fill(const MString& text, const MString& value) {
  return MString::Replace(text, MString(u"^"), value);
}

uint32_t LocalizedText::WindowWidth(const MString& widthText) {
  uint32_t width = widthText.ParseDigits();
  return width == 0 ? kFallbackWidth : width;
}

}  // namespace SASM
