#pragma once
// One broker method's arguments as a command line gives them, and its results
// as lines of text. Every parameter the method reads takes the next argument,
// converted to its type; out-only parameters take none, and parameters with a
// default may be left off at the end.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

class BrokerCallArguments {
 public:
  // The types the interface uses; Unknown is any other, which no argument can give.
  enum class Type { Bstr, LpWstr, Int32, UInt32, Int64, Bytes, Variant, Unknown };

  struct Parameter {
    std::u16string name;
    Type type = Type::Unknown;
    bool in = true;
    bool out = false;
    bool hasDefault = false;
    std::u16string defaultText;  // the default as an argument would give it
  };

  struct Value {
    int64_t number = 0;          // Int32 and Int64 signed, UInt32 unsigned
    std::u16string text;         // Bstr, LpWstr
    std::vector<uint8_t> bytes;  // Bytes
    bool nullBytes = false;      // Bytes given as "null"
    std::u16string bytesFile;    // Bytes given as "@FILE", read by the caller
  };

  // One value per parameter; out-only parameters get an empty one. False with
  // error set when the argument count doesn't fit, a number is bad or out of
  // its type's range, hex is bad, or a type can't be given on a command line.
  static bool Bind(const std::vector<Parameter>& parameters, const std::vector<std::u16string>& args,
                   std::vector<Value>& values, std::string& error);

  // "BrokerReadFile(p_fileCookie UI4, p_numToRead UI4, out p_numRead UI4, out p_data SAFEARRAY(UI1))"
  static std::string Describe(std::u16string_view method, const std::vector<Parameter>& parameters);
  static const char* TypeName(Type type);

  // Lower-case hex, two digits a byte, nothing between.
  static std::string Hex(const uint8_t* bytes, size_t size);
  // UTF-8 on one line: '%' and control characters become %XX, so the text comes back exactly.
  static std::string Text(std::u16string_view text);
  // Text narrowed for messages: anything outside ASCII becomes '?'.
  static std::string Ascii(std::u16string_view text);
};

}  // namespace SASM
