#include "delivery/UpdateDescription.h"

#include <algorithm>

namespace SASM {

bool UpdateDescription::ExtractMetaBlock(std::u16string_view text, std::u16string& block) {
  for (size_t at = text.find(u'<'); at != std::u16string_view::npos; at = text.find(u'<', at + 1)) {
    if (!text.substr(at).starts_with(u"<meta")) continue;
    const size_t close = text.find(u'>', at);
    if (close == std::u16string_view::npos) return false;
    const size_t end = text.find(u"</meta", close + 1);
    if (end == std::u16string_view::npos) return false;
    block.assign(text.substr(close + 1, end - close - 1));
    return true;
  }
  return false;
}

bool UpdateDescription::ExtractUpdateVersion(std::u16string_view text, std::u16string& version) {
  constexpr auto npos = std::u16string_view::npos;
  for (size_t at = text.find(u'<'); at != npos; at = text.find(u'<', at + 1)) {
    if (!text.substr(at + 1).starts_with(u"update")) continue;
    // Only the tag itself is searched for its attribute.
    const size_t tagEnd = std::min(text.find(u'>', at), text.size());
    for (size_t v = text.find(u'v', at); v < tagEnd; v = text.find(u'v', v + 1)) {
      if (!text.substr(v).starts_with(u"version")) continue;
      const size_t open = text.find(u'"', v);
      if (open == npos) return false;
      const size_t close = text.find(u'"', open + 1);
      if (close == npos) return false;
      version.assign(text.substr(open + 1, close - open - 1));
      return true;
    }
  }
  return false;
}

std::u16string UpdateDescription::DecodeMetaBlock(std::u16string_view block) {
  std::u16string text(block);
  ReplaceAll(text, u"\"", u"'");
  ReplaceAll(text, u"&quot;", u"\"");
  ReplaceAll(text, u"&apos;", u"'");
  ReplaceAll(text, u"&nbsp;", u" ");
  return text;
}

void UpdateDescription::ReplaceAll(std::u16string& text, std::u16string_view from, std::u16string_view to) {
  if (from.empty()) return;
  for (size_t at = text.find(from); at != std::u16string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

}  // namespace SASM
