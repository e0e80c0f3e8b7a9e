// The module's string table as the platform reads it: sixteen languages with
// the same ids, entries that carry their own zero, the language chosen by the
// thread's locale, and every language drawn with its locale's font.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "engine/VendorIdentity.h"
#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"
#include "ui/LocaleMetrics.h"
#include "ui/LocalizedText.h"
#include "ui/win32/PngImage.h"

using namespace SASM;

namespace {

constexpr LANGID kLanguages[] = {29,   1028, 1029, 1031, 1033, 1036, 1040, 1041,
                                 1042, 1043, 1045, 1046, 1049, 1055, 2052, 3082};

// The ids the installer's table holds; all others are absent in every language.
std::set<uint32_t> TableIds() {
  std::set<uint32_t> ids;
  for (auto [from, to] : {std::pair{1, 8}, {10, 14}, {16, 26}, {28, 28}, {30, 36}, {38, 39}, {51, 65}, {71, 85},
                          {87, 94}})
    for (int id = from; id <= to; ++id) ids.insert(static_cast<uint32_t>(id));
  return ids;
}

// One language's entries exactly as stored: id to its units, the terminating zero included.
std::map<uint32_t, std::wstring> RawEntries(HMODULE module, LANGID language) {
  std::map<uint32_t, std::wstring> entries;
  for (uint32_t block = 1; block <= 64; ++block) {
    HRSRC found = FindResourceExW(module, RT_STRING, MAKEINTRESOURCEW(block), language);
    if (!found) continue;
    const WCHAR* unit = static_cast<const WCHAR*>(LockResource(LoadResource(module, found)));
    const WCHAR* end = unit + SizeofResource(module, found) / sizeof(WCHAR);
    for (uint32_t i = 0; i < 16 && unit < end; ++i) {
      size_t length = *unit++;
      if (length > static_cast<size_t>(end - unit)) {
        ADD_FAILURE() << "entry " << (block - 1) * 16 + i << " runs past its block";
        break;
      }
      if (length > 0) entries[(block - 1) * 16 + i] = std::wstring(unit, length);
      unit += length;
    }
  }
  return entries;
}

size_t Count(const std::wstring& text, wchar_t unit) {
  size_t n = 0;
  for (wchar_t c : text) n += c == unit;
  return n;
}

// The mark-up of a text, tag by tag.
std::vector<std::wstring> Tags(const std::wstring& text) {
  std::vector<std::wstring> tags;
  for (size_t open = text.find(L'<'); open != std::wstring::npos; open = text.find(L'<', open + 1)) {
    size_t close = text.find(L'>', open);
    if (close == std::wstring::npos) break;
    tags.push_back(text.substr(open, close - open + 1));
    open = close;
  }
  return tags;
}

std::wstring Wide(const char* ascii) { return std::wstring(ascii, ascii + strlen(ascii)); }

// Puts the thread's locale back when a test ends.
class ThreadLocaleScope {
 public:
  ThreadLocaleScope() : saved_(GetThreadLocale()) {}
  ~ThreadLocaleScope() { SetThreadLocale(saved_); }

 private:
  LCID saved_;
};

class StringTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    module_ = LoadLibraryW(WineTest::ModulePath().c_str());
    ASSERT_NE(module_, nullptr);
    hosted_.host.resourceModule = module_;
  }
  void TearDown() override {
    if (module_) FreeLibrary(module_);
  }
  std::wstring Load(uint32_t id, uint8_t useHost = 0) {
    MString out;
    hosted_.shim->LoadString(out, id, useHost);
    return ToWide(out.View());
  }

  HMODULE module_ = nullptr;
  WineTest::HostedShim hosted_;
  ThreadLocaleScope locale_;
};

TEST_F(StringTableTest, EveryLanguageHoldsTheSameIdsEachEndingInItsOwnZero) {
  const std::map<uint32_t, std::wstring> english = RawEntries(module_, 1033);
  std::set<uint32_t> ids;
  for (const auto& entry : english) ids.insert(entry.first);
  ASSERT_EQ(ids, TableIds());

  const std::wstring update = L"https://" + Wide(Vendor::kUpdateHost);
  const std::map<LANGID, std::wstring> segments = {
      {29, L"/se"},   {1028, L"/tw"}, {1029, L"/cz"}, {1031, L"/de"}, {1033, L""},    {1036, L"/fr"},
      {1040, L"/it"}, {1041, L"/jp"}, {1042, L"/kr"}, {1043, L"/nl"}, {1045, L"/pl"}, {1046, L"/br"},
      {1049, L"/ru"}, {1055, L"/tr"}, {2052, L"/cn"}, {3082, L"/es"}};
  for (LANGID language : kLanguages) {
    SCOPED_TRACE(language);
    const std::map<uint32_t, std::wstring> entries = RawEntries(module_, language);
    std::set<uint32_t> found;
    for (const auto& [id, entry] : entries) {
      found.insert(id);
      SCOPED_TRACE(id);
      EXPECT_EQ(entry.find(L'\0'), entry.size() - 1) << "one zero, at the end";
      auto english_entry = english.find(id);
      if (english_entry == english.end()) continue;
      EXPECT_EQ(Count(entry, L'^'), Count(english_entry->second, L'^'));
      EXPECT_EQ(Tags(entry), Tags(english_entry->second));
      if (language != 1033 && id != 71) {
        EXPECT_NE(entry, english_entry->second) << "left untranslated";
      }
    }
    EXPECT_EQ(found, ids);
    EXPECT_EQ(entries.at(71), language == 1029 ? std::wstring(L"750", 4) : std::wstring(L"730", 4));
    EXPECT_EQ(entries.at(88), update + segments.at(language) + std::wstring(L"/lumenplayer/update/", 21));
  }

  // Each link goes to the vendor's site that serves it.
  const std::pair<uint32_t, const char*> links[] = {
      {19, Vendor::kWebDomain},         {60, Vendor::kPlayerDownloadHost}, {61, Vendor::kKnowledgeBaseHost},
      {64, Vendor::kKnowledgeBaseHost}, {72, Vendor::kWebDomain},          {78, Vendor::kLabsHost},
      {79, Vendor::kLabsHost},          {85, Vendor::kWebDomain},          {91, Vendor::kWebDomain}};
  for (auto [id, host] : links) {
    EXPECT_NE(english.at(id).find(L"<a href='http://" + Wide(host) + L"/"), std::wstring::npos) << id;
  }
}

TEST_F(StringTableTest, ThreadLocaleChoosesTheLanguageAndTheZeroIsCutOff) {
  struct Case {
    LCID locale;
    uint32_t id;
    const wchar_t* text;
  };
  // Swedish is a neutral table: Wine reaches it through a Swedish user locale
  // (LC_ALL=sv_SE.UTF-8), never through the thread's, which it matches exactly.
  const Case cases[] = {{1029, 71, L"750"},    {1029, 6, L"Hotovo"}, {1041, 6, L"完了"},  {1041, 71, L"730"},
                        {1049, 6, L"Готово"}, {1033, 6, L"Done"}, {1033, 71, L"730"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.locale);
    ASSERT_TRUE(SetThreadLocale(c.locale));
    EXPECT_EQ(Load(c.id), c.text);
  }
  ASSERT_TRUE(SetThreadLocale(1029));
  MString width;
  EXPECT_EQ(LocalizedText::WindowWidth(hosted_.shim->LoadString(width, LocalizedText::kWidthId, 0)), 750u);
}

TEST_F(StringTableTest, MissingIdComesFromTheHostAndWithoutFallbackShowsTheMarker) {
  ASSERT_TRUE(SetThreadLocale(1041));
  EXPECT_EQ(Load(15, 1), L"^%");
  EXPECT_EQ(Load(9, 1), L"[string 9]");
  EXPECT_EQ(Load(15, 0), L"MISSING LOCALIZATION");
  EXPECT_EQ(Load(64000, 0), L"MISSING LOCALIZATION");
}

// A contact sheet: one text per language in its locale's font, saved beside the
// build as strings-sheet.png for a person to look at.

struct GdiDeleter {
  void operator()(void* object) const { DeleteObject(static_cast<HGDIOBJ>(object)); }
};
using GdiObject = std::unique_ptr<void, GdiDeleter>;
struct DcDeleter {
  void operator()(HDC dc) const { DeleteDC(dc); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, DcDeleter>;


TEST_F(StringTableTest, EveryLanguageDrawsWithItsLocalesFontIntoTheSheet) {
  const LCID locales[] = {29, 1028, 1029, 1031, 1033, 1036, 1040, 1041,
                          1042, 1043, 1045, 1046, 1049, 1055, 2052, 3082};
  constexpr int kWidth = 960, kRow = 30, kLabel = 130;
  const int height = kRow * static_cast<int>(std::size(locales));

  BITMAPINFO info = {};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), kWidth, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  MemoryDc dc(CreateCompatibleDC(nullptr));
  GdiObject bitmap(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  ASSERT_TRUE(dc && bitmap && bits);
  SelectObject(dc.get(), bitmap.get());
  PatBlt(dc.get(), 0, 0, kWidth, height, WHITENESS);
  SetBkMode(dc.get(), TRANSPARENT);
  GdiObject labelFont(CreateFontA(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                  CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, "Arial"));

  const uint32_t* pixels = static_cast<const uint32_t*>(bits);
  for (size_t row = 0; row < std::size(locales); ++row) {
    ASSERT_TRUE(SetThreadLocale(locales[row]));
    const LocaleMetrics& metrics = LocaleMetrics::For(GetThreadLocale());
    SCOPED_TRACE(metrics.fontFace);
    MString text;
    text = LocalizedText::Fill(hosted_.shim->LoadString(text, 3, 0), MString(LocalizedText::kProductVersion));
    MString button;
    text.Append(u"  ").Append(hosted_.shim->LoadString(button, 34, 0));
    std::wstring shown = ToWide(text.View());

    int top = static_cast<int>(row) * kRow;
    std::wstring label = std::to_wstring(locales[row]) + L" " + Wide(metrics.fontFace) + L" " +
                         std::to_wstring(metrics.FontSize(18));
    SetTextColor(dc.get(), RGB(110, 110, 110));
    SelectObject(dc.get(), labelFont.get());
    RECT labelRect = {4, top, kLabel, top + kRow};
    DrawTextW(dc.get(), label.c_str(), -1, &labelRect, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);

    GdiObject font(CreateFontA(-metrics.FontSize(18), 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET,
                               OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                               metrics.fontFace));
    SelectObject(dc.get(), font.get());
    // The CJK faces are stand-ins that the prefix maps to a font with every
    // glyph; Arial borrows them by font linking, which this query can't see.
    if (std::string(metrics.fontFace) != "Arial") {
      std::vector<WORD> glyphs(shown.size());
      GetGlyphIndicesW(dc.get(), shown.c_str(), static_cast<int>(shown.size()), glyphs.data(),
                       GGI_MARK_NONEXISTING_GLYPHS);
      EXPECT_EQ(std::count(glyphs.begin(), glyphs.end(), 0xFFFF), 0);
    }
    SetTextColor(dc.get(), RGB(0, 0, 0));
    RECT textRect = {kLabel, top, kWidth - 4, top + kRow};
    DrawTextW(dc.get(), shown.c_str(), static_cast<int>(shown.size()), &textRect,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    GdiFlush();

    int ink = 0;
    for (int y = top; y < top + kRow; ++y)
      for (int x = kLabel; x < kWidth; ++x) ink += (pixels[static_cast<size_t>(y) * kWidth + x] & 0xFFFFFF) == 0;
    EXPECT_GT(ink, 200) << "the text drew";
  }
  std::wstring path = WineTest::BinaryDirectory() + L"\\..\\..\\strings-sheet.png";
  EXPECT_TRUE(PngImage::Save(path, kWidth, height, static_cast<const uint8_t*>(bits)));
}

}  // namespace
