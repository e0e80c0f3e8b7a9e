#pragma once
// A 16-byte class, interface or type library id as the platform lays it out
// in memory, and its registry text form.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace SASM {

class ClassId {
 public:
  // Byte positions in the order the text shows them; -1 is a dash. The first
  // three groups are little-endian numbers, so their bytes read backwards.
  static constexpr int8_t kTextOrder[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};

  std::array<uint8_t, 16> bytes{};

  // From the braced text form; a malformed literal does not build.
  static consteval ClassId Parse(std::string_view text) {
    if (text.size() != 38 || text.front() != '{' || text.back() != '}') throw "not a braced class id";
    ClassId id;
    size_t at = 1;
    for (int8_t position : kTextOrder) {
      if (position < 0) {
        if (text[at++] != '-') throw "dash expected";
        continue;
      }
      id.bytes[static_cast<size_t>(position)] = static_cast<uint8_t>(HexDigit(text[at]) * 16 + HexDigit(text[at + 1]));
      at += 2;
    }
    return id;
  }

  // "{...}" with two upper-case hexadecimal digits per byte.
  std::string Text() const;
  std::u16string WideText() const;

 private:
  static consteval int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    throw "not a hexadecimal digit";
  }
};

}  // namespace SASM
