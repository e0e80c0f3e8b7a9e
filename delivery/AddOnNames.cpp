#include "delivery/AddOnNames.h"

#include <cstring>

#include "engine/VendorIdentity.h"

namespace SASM {
namespace {

bool IsAsciiLetterOrDigit(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool IsLabelByte(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '-'; }

}  // namespace

bool AddOnNames::IsValidProductName(const char16_t* name) {
  if (!name) return false;
  size_t length = 0;
  for (; name[length]; ++length) {
    if (length >= kMaxNameBytes || !IsAsciiLetterOrDigit(name[length])) return false;
  }
  return length > 0;
}

bool AddOnNames::ParseProductUrl(const char* url, std::string& host, std::string& path, bool& secure) {
  host.clear();
  path.clear();
  secure = false;
  if (!url) return false;
  const std::string_view text(url);
  if (text.size() < 8) return false;
  bool isSecure = false;
  size_t at;
  if (text.substr(0, 7) == "http://") {
    at = 7;
  } else if (text.substr(0, 8) == "https://") {
    at = 8;
    isSecure = true;
  } else {
    return false;
  }
  const size_t labelStart = at;
  while (at < text.size() && text[at] != '.') {
    if (!IsLabelByte(text[at])) return false;
    ++at;
  }
  const size_t labelSize = at - labelStart;
  if (at == text.size() || labelSize == 0 || labelSize > kMaxLabelBytes) return false;
  const std::string_view domain(Vendor::kAddOnDomain);
  if (text.substr(at, domain.size()) != domain) return false;
  const size_t pathStart = at + domain.size() - 1;
  host.assign(text.substr(labelStart, pathStart - labelStart));
  path.assign(text.substr(pathStart));
  secure = isSecure;
  return true;
}

}  // namespace SASM
