#include "broker/ShortcutRules.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>

#include "engine/VendorIdentity.h"

namespace SASM {
namespace {

constexpr std::array<uint8_t, 128> MakeForbiddenTable() {
  std::array<uint8_t, 128> table{};
  for (int c = 0; c < 32; ++c) table[c] = 1;
  for (char c : std::string_view("\"%&*./:<>?\\|")) table[static_cast<uint8_t>(c)] = 1;
  return table;
}
constexpr std::array<uint8_t, 128> kForbidden = MakeForbiddenTable();

bool IsAsciiLetterOrDigit(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

char16_t AsciiLower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }

bool StartsWithNoCase(std::u16string_view text, std::u16string_view prefix) {
  if (text.size() < prefix.size()) return false;
  for (size_t i = 0; i < prefix.size(); ++i) {
    if (AsciiLower(text[i]) != AsciiLower(prefix[i])) return false;
  }
  return true;
}

// Writes text and a terminator at `at` if both fit in `capacity`.
bool PutAt(char16_t* buffer, size_t capacity, size_t at, std::u16string_view text) {
  if (at >= capacity || text.size() >= capacity - at) return false;
  std::copy(text.begin(), text.end(), buffer + at);
  buffer[at + text.size()] = u'\0';
  return true;
}

std::u16string Numbered(int32_t number, std::u16string_view extension) {
  std::u16string ending = u" (";
  for (char digit : std::to_string(number)) ending.push_back(static_cast<char16_t>(digit));
  ending += u")";
  ending += extension;
  return ending;
}

}  // namespace

std::u16string ShortcutRules::RedirectAddress() {
  std::u16string address = u"https://";
  for (char c : std::string_view(Vendor::kRedirectHost)) address.push_back(static_cast<char16_t>(c));
  return address + kRedirectPath;
}

bool ShortcutRules::IsDesktopShortcutName(std::u16string_view name) {
  return std::all_of(name.begin(), name.end(),
                     [](char16_t c) { return c >= 128 || c == u'_' || IsAsciiLetterOrDigit(c); });
}

bool ShortcutRules::IsRedirectAddress(std::u16string_view url) { return url.starts_with(RedirectAddress()); }

bool ShortcutRules::IsForbidden(char16_t c) { return c < 128 && kForbidden[c] != 0; }

bool ShortcutRules::IsInternetShortcutName(std::u16string_view name) {
  return name.size() < kNameLimit && std::none_of(name.begin(), name.end(), IsForbidden);
}

bool ShortcutRules::IsWebUrl(std::u16string_view canonicalUrl) {
  return StartsWithNoCase(canonicalUrl, u"http:") || StartsWithNoCase(canonicalUrl, u"https:");
}

bool ShortcutRules::IsIconCachePath(std::u16string_view path, std::u16string_view appDataFolder,
                                    std::u16string_view name) {
  if (path.size() >= kPathCapacity || name.size() >= kNameLimit) return false;
  std::u16string prefix(appDataFolder);
  prefix += kIconCacheLeaf;
  prefix += u"\\";
  prefix += name;
  if (!path.starts_with(prefix)) return false;
  std::u16string_view rest = path.substr(prefix.size());
  size_t end = 0;
  while (end < rest.size() &&
         ((rest[end] >= u'0' && rest[end] <= u'9') || rest[end] == u' ' || rest[end] == u'(' || rest[end] == u')'))
    ++end;
  return rest.substr(end) == u".ico";
}

bool ShortcutRules::BuildMarkup(const std::string& urlUtf8, const std::string& nameUtf8, std::string& markup) {
  char buffer[kMarkupCapacity];
  int length = std::snprintf(buffer, sizeof(buffer), kMarkupTemplate, urlUtf8.c_str(), nameUtf8.c_str());
  if (length < 0 || static_cast<size_t>(length) >= sizeof(buffer)) return false;
  markup.assign(buffer, static_cast<size_t>(length));
  return true;
}

bool ShortcutRules::Contains(const ShortcutByteArray& array, std::string_view text) {
  if (text.empty()) return true;
  if (!array.data) return false;
  const uint8_t* end = array.data + array.shape.count;
  return std::search(array.data, end, text.begin(), text.end(),
                     [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); }) != end;
}

char16_t* ShortcutRules::MakeUniquePath(ShortcutPlatform& platform, char16_t* buffer, size_t capacity,
                                        const char16_t* name, const char16_t* extension, bool overwrite) {
  if (!buffer || capacity == 0) return nullptr;
  size_t length = 0;
  while (length < capacity && buffer[length] != u'\0') ++length;
  if (length == capacity) return nullptr;
  if (length == 0 || buffer[length - 1] != u'\\') {
    if (!PutAt(buffer, capacity, length, u"\\")) return nullptr;
    ++length;
  }
  std::u16string_view nameText = name ? std::u16string_view(name) : std::u16string_view();
  std::u16string_view extensionText = extension ? std::u16string_view(extension) : std::u16string_view();
  if (!PutAt(buffer, capacity, length, nameText)) return nullptr;
  const size_t stem = length + nameText.size();
  if (!PutAt(buffer, capacity, stem, extensionText)) return nullptr;
  if (overwrite || platform.GetFileAttributes(buffer) == ShortcutPlatform::kInvalidAttributes) return buffer;
  // The number can't run past the counter's range, where formatting it would overflow.
  for (int32_t number = 2; number < INT32_MAX; ++number) {
    if (!PutAt(buffer, capacity, stem, Numbered(number, extensionText))) return nullptr;
    if (platform.GetFileAttributes(buffer) == ShortcutPlatform::kInvalidAttributes) return buffer;
  }
  return nullptr;
}

}  // namespace SASM
