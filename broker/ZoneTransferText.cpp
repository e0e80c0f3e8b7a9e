#include "broker/ZoneTransferText.h"

namespace SASM {

namespace {

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char x = a[i] >= 'a' && a[i] <= 'z' ? static_cast<char>(a[i] - 32) : a[i];
    char y = b[i] >= 'a' && b[i] <= 'z' ? static_cast<char>(b[i] - 32) : b[i];
    if (x != y) return false;
  }
  return true;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string ZoneTransferText::Compose(uint32_t zone) {
  return "[ZoneTransfer]\r\nZoneId=" + std::to_string(zone) + "\r\n";
}

bool ZoneTransferText::ParseZoneId(std::string_view text, uint32_t& zone) {
  bool inSection = false;
  while (!text.empty()) {
    size_t end = text.find('\n');
    std::string_view line = Trim(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (line.starts_with('[')) {
      inSection = EqualsNoCase(line, "[ZoneTransfer]");
      continue;
    }
    size_t equals = line.find('=');
    if (!inSection || equals == std::string_view::npos || !EqualsNoCase(Trim(line.substr(0, equals)), "ZoneId")) {
      continue;
    }
    std::string_view digits = Trim(line.substr(equals + 1));
    if (digits.empty() || digits.size() > 9) return false;
    uint32_t value = 0;
    for (char digit : digits) {
      if (digit < '0' || digit > '9') return false;
      value = value * 10 + static_cast<uint32_t>(digit - '0');
    }
    zone = value;
    return true;
  }
  return false;
}

}  // namespace SASM
