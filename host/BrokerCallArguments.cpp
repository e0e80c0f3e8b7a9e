#include "host/BrokerCallArguments.h"

#include <limits>

namespace SASM {
namespace {

using Type = BrokerCallArguments::Type;

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// Decimal within the type's range, or "0x" hex of at most the type's width,
// which gives the bit pattern (0xFFFFFFFF is -1 for an I4).
bool ParseNumber(std::u16string_view text, Type type, int64_t& value) {
  const bool wide = type == Type::Int64;
  const uint64_t widthMask = wide ? std::numeric_limits<uint64_t>::max() : 0xFFFFFFFFu;
  if (text.size() > 2 && text[0] == u'0' && (text[1] == u'x' || text[1] == u'X')) {
    uint64_t bits = 0;
    for (char16_t c : text.substr(2)) {
      int digit = HexDigit(c);
      if (digit < 0 || bits > (widthMask >> 4)) return false;
      bits = bits << 4 | static_cast<uint64_t>(digit);
    }
    if (type == Type::Int32)
      value = static_cast<int32_t>(static_cast<uint32_t>(bits));
    else
      value = static_cast<int64_t>(bits);
    return true;
  }
  const bool negative = !text.empty() && text[0] == u'-';
  if (negative) text.remove_prefix(1);
  if (text.empty()) return false;
  uint64_t magnitude = 0;
  for (char16_t c : text) {
    if (c < u'0' || c > u'9') return false;
    const uint64_t digit = static_cast<uint64_t>(c - u'0');
    if (magnitude > (std::numeric_limits<uint64_t>::max() - digit) / 10) return false;
    magnitude = magnitude * 10 + digit;
  }
  // The largest magnitude each sign may have in the type.
  uint64_t limit;
  if (type == Type::UInt32)
    limit = negative ? 0 : 0xFFFFFFFFu;
  else if (type == Type::Int32)
    limit = negative ? 0x80000000u : 0x7FFFFFFFu;
  else
    limit = negative ? 0x8000000000000000u : 0x7FFFFFFFFFFFFFFFu;
  if (magnitude > limit) return false;
  value = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
  return true;
}

bool ParseBytes(std::u16string_view text, BrokerCallArguments::Value& value) {
  if (text == u"null") {
    value.nullBytes = true;
    return true;
  }
  if (!text.empty() && text[0] == u'@') {
    value.bytesFile = std::u16string(text.substr(1));
    return !value.bytesFile.empty();
  }
  if (text.size() % 2 != 0) return false;
  for (size_t i = 0; i < text.size(); i += 2) {
    int high = HexDigit(text[i]), low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return false;
    value.bytes.push_back(static_cast<uint8_t>(high << 4 | low));
  }
  return true;
}

bool Convert(const BrokerCallArguments::Parameter& parameter, std::u16string_view text,
             BrokerCallArguments::Value& value, std::string& error) {
  const std::string name = BrokerCallArguments::Ascii(parameter.name);
  switch (parameter.type) {
    case Type::Bstr:
    case Type::LpWstr: value.text = std::u16string(text); return true;
    case Type::Int32:
    case Type::UInt32:
    case Type::Int64:
      if (ParseNumber(text, parameter.type, value.number)) return true;
      error = name + ": not a " + BrokerCallArguments::TypeName(parameter.type) +
              " number: " + BrokerCallArguments::Ascii(text);
      return false;
    case Type::Bytes:
      if (ParseBytes(text, value)) return true;
      error = name + ": bytes are hex digits in pairs, \"null\" or @FILE, not " + BrokerCallArguments::Ascii(text);
      return false;
    default:
      error = name + ": a " + BrokerCallArguments::TypeName(parameter.type) +
              " argument can't be given on the command line";
      return false;
  }
}

}  // namespace

bool BrokerCallArguments::Bind(const std::vector<Parameter>& parameters, const std::vector<std::u16string>& args,
                               std::vector<Value>& values, std::string& error) {
  size_t least = 0, most = 0;
  for (const Parameter& parameter : parameters) {
    if (!parameter.in) continue;
    ++most;
    if (!parameter.hasDefault) least = most;
  }
  if (args.size() < least || args.size() > most) {
    error = "takes " + (least == most ? std::to_string(most) : std::to_string(least) + " to " + std::to_string(most)) +
            (most == 1 ? " argument" : " arguments") + ", not " + std::to_string(args.size());
    return false;
  }
  values.assign(parameters.size(), Value{});
  size_t next = 0;
  for (size_t i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = parameters[i];
    if (!parameter.in) continue;
    std::u16string_view text = next < args.size() ? std::u16string_view(args[next++]) : parameter.defaultText;
    if (!Convert(parameter, text, values[i], error)) return false;
  }
  return true;
}

const char* BrokerCallArguments::TypeName(Type type) {
  switch (type) {
    case Type::Bstr: return "BSTR";
    case Type::LpWstr: return "LPWSTR";
    case Type::Int32: return "I4";
    case Type::UInt32: return "UI4";
    case Type::Int64: return "LONG_PTR";
    case Type::Bytes: return "SAFEARRAY(UI1)";
    case Type::Variant: return "VARIANT";
    default: return "unknown";
  }
}

std::string BrokerCallArguments::Describe(std::u16string_view method, const std::vector<Parameter>& parameters) {
  std::string line = Ascii(method) + "(";
  for (size_t i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = parameters[i];
    if (i) line += ", ";
    if (parameter.hasDefault) line += "[";
    if (parameter.out) line += parameter.in ? "inout " : "out ";
    line += Ascii(parameter.name) + " " + TypeName(parameter.type);
    if (parameter.hasDefault) line += " = " + Ascii(parameter.defaultText) + "]";
  }
  return line + ")";
}

std::string BrokerCallArguments::Hex(const uint8_t* bytes, size_t size) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(size * 2);
  for (size_t i = 0; i < size; ++i) {
    text.push_back(kDigits[bytes[i] >> 4]);
    text.push_back(kDigits[bytes[i] & 0xF]);
  }
  return text;
}

std::string BrokerCallArguments::Text(std::u16string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF)
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
    else if (c >= 0xD800 && c <= 0xDFFF)
      c = 0xFFFD;  // a lone surrogate has no UTF-8 form
    if (c < 0x20 || c == 0x7F || c == '%') {
      const uint8_t byte = static_cast<uint8_t>(c);
      out += '%' + Hex(&byte, 1);
    } else if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | c >> 6);
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | c >> 12);
      out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | c >> 18);
      out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
      out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::string BrokerCallArguments::Ascii(std::u16string_view text) {
  std::string out;
  for (char16_t c : text) out.push_back(c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '?');
  return out;
}

}  // namespace SASM
