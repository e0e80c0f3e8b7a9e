#include "ui/MTextChunk.h"

#include <string>
#include <string_view>

namespace SASM {
namespace {

constexpr char16_t kBullet = 8226;
constexpr int32_t kListSpacing = 8;

enum Bullet { kNoBullet, kBulletMark, kSpacingOnly };

bool EndsTagName(char16_t c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'/'; }

std::u16string Lowered(std::u16string_view name) {
  std::u16string lowered(name);
  for (char16_t& c : lowered)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
  return lowered;
}

}  // namespace

std::vector<MTextChunk> MTextChunk::Parse(const MString& text, bool hasMarkup, bool plainBold, uint32_t plainColor) {
  std::vector<MTextChunk> chunks;
  if (!hasMarkup) {
    MTextChunk chunk;
    chunk.text = text;
    chunk.bold = plainBold;
    chunk.color = plainColor;
    chunks.push_back(chunk);
    return chunks;
  }

  std::u16string_view copy = text.View();
  bool bold = false, newLine = false;
  int32_t linkKind = kNoLink;
  Bullet bullet = kNoBullet;
  std::u16string_view href;
  while (!copy.empty()) {
    const size_t stop = std::min(copy.find_first_of(u"<\n"), copy.size());
    const std::u16string_view piece = copy.substr(0, stop);
    copy.remove_prefix(stop);
    std::u16string_view tag;
    if (!copy.empty() && copy.front() == u'\n') {
      copy.remove_prefix(1);
      newLine = true;
    } else if (!copy.empty() && copy.front() == u'<') {
      copy.remove_prefix(1);
      // A tag without ">" runs to the end of the text.
      const size_t close = std::min(copy.find(u'>'), copy.size());
      tag = copy.substr(0, close);
      copy.remove_prefix(std::min(close + 1, copy.size()));
    }

    if (!piece.empty() || newLine) {
      MTextChunk chunk;
      chunk.text = MString(piece);
      chunk.href = MString(href);
      chunk.linkKind = linkKind;
      chunk.bold = bold;
      chunk.newLine = newLine;
      chunks.push_back(chunk);
      newLine = false;
    }
    // A pending bullet marks the latest run, new or not; before the first run there is none to mark.
    if (bullet != kNoBullet && !chunks.empty()) {
      MTextChunk& last = chunks.back();
      if (bullet == kBulletMark) last.text = MString(std::u16string{kBullet, u' '} + last.text.ToU16());
      last.spacing = kListSpacing;
    }
    bullet = kNoBullet;

    if (tag.empty()) continue;
    const bool closing = tag.front() == u'/';
    if (closing) tag.remove_prefix(1);
    size_t nameEnd = 0;
    while (nameEnd < tag.size() && !EndsTagName(tag[nameEnd])) ++nameEnd;
    const std::u16string name = Lowered(tag.substr(0, nameEnd));
    if (name == u"a") {
      if (closing) {
        href = {};
        linkKind = kNoLink;
      } else {
        // Only the first quoted value is read, whatever attribute it belongs to.
        const size_t open = tag.find_first_of(u"\"'");
        href = {};
        if (open != tag.npos) {
          const std::u16string_view rest = tag.substr(open + 1);
          href = rest.substr(0, std::min(rest.find(tag[open]), rest.size()));
        }
        linkKind = kWebLink;
      }
    } else if (name == u"ncp") {
      linkKind = closing ? kNoLink : kSettingsLink;
    } else if (name == u"strong") {
      bold = !closing;
    } else if (name == u"br") {
      newLine = true;
    } else if (name == u"li") {
      if (!closing) {
        newLine = true;
        bullet = kBulletMark;
      }
    } else if (name == u"ul") {
      if (closing) {
        newLine = true;
        bullet = kSpacingOnly;
      }
    }
  }
  return chunks;
}

}  // namespace SASM
