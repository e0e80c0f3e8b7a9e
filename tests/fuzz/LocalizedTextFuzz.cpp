// The placeholder, width and zero-cut rules over arbitrary text: the first
// byte splits the input into a table text and the value put into it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/MString.h"
#include "engine/StringLookup.h"
#include "ui/LocalizedText.h"

using namespace SASM;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  size_t split = data[0] % size;
  std::u16string text, value;
  for (size_t i = 1; i + 1 < size; i += 2) {
    char16_t unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    (i < split ? text : value).push_back(unit);
  }
  std::u16string_view visible = StringLookup::VisibleText(text);
  if (visible.size() > text.size()) __builtin_trap();
  MString filled = LocalizedText::Fill(MString(visible), MString(std::u16string_view(value)));
  LocalizedText::WindowWidth(filled);
  return 0;
}
