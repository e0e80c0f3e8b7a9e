#pragma once
// The tests a shortcut's name, address and icon must pass, the mark-up that
// names a shortcut, and the unique file names shortcuts and icons are saved
// under. Plain functions over text; the one file probe goes through the seam.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "broker/ShortcutByteArray.h"
#include "broker/ShortcutPlatform.h"

namespace SASM {

class ShortcutRules {
 public:
  static constexpr uint32_t kPathCapacity = 260;
  // Names and their UTF-8 forms must be shorter than this; addresses' UTF-8 shorter than kUrlBytes.
  static constexpr size_t kNameLimit = 30;
  static constexpr size_t kUrlBytes = 192;
  static constexpr size_t kMarkupCapacity = 256;
  // Escape unsafe characters and percent signs.
  static constexpr uint32_t kUrlCanonicalFlags = 0x20001000;

  static constexpr int32_t kDesktopFolder = 16;
  static constexpr int32_t kProgramsFolder = 2;
  static constexpr int32_t kAppDataFolder = 26;
  static constexpr char16_t kQuickLaunchLeaf[] = u"\\Microsoft\\Internet Explorer\\Quick Launch";
  static constexpr char16_t kIconCacheLeaf[] = u"\\Corva\\Lumen Player\\Icon Cache";
  static constexpr char16_t kRedirectPath[] = u"/cn/lumenservice/shortcut/shortcutredirect/?url=";
  static constexpr char kMarkupTemplate[] = "<shortcut href=\"%s\">%s</shortcut>";

  // The redirector every desktop shortcut must lead through: "https://", the vendor's redirect host, the path.
  static std::u16string RedirectAddress();

  // A desktop shortcut's name: below 128 only digits, ASCII letters and "_".
  static bool IsDesktopShortcutName(std::u16string_view name);
  static bool IsRedirectAddress(std::u16string_view url);

  // An internet shortcut's name: shorter than kNameLimit, none of the forbidden table's characters.
  static bool IsInternetShortcutName(std::u16string_view name);
  // Codes below 32 and " % & * . / : < > ? \ |; nothing from 128 up.
  static bool IsForbidden(char16_t c);
  // "http:" or "https:" in either case.
  static bool IsWebUrl(std::u16string_view canonicalUrl);
  // The icon cache under appDataFolder, "\", the name, then only digits,
  // spaces and parentheses, and ".ico" at the very end.
  static bool IsIconCachePath(std::u16string_view path, std::u16string_view appDataFolder, std::u16string_view name);

  // The template filled with the UTF-8 address and name, in a buffer of
  // kMarkupCapacity bytes; false when it would not fit.
  static bool BuildMarkup(const std::string& urlUtf8, const std::string& nameUtf8, std::string& markup);
  // Whether the array's bytes hold the text anywhere.
  static bool Contains(const ShortcutByteArray& array, std::string_view text);

  // Adds "\" when the folder already in `buffer` doesn't end in one, then the
  // name and extension. Unless `overwrite`, a taken path gives way to
  // " (2)", " (3)"... before the extension until a free one is found. Null
  // when the path would not fit in `capacity` characters (terminator
  // included); every write stays inside it.
  static char16_t* MakeUniquePath(ShortcutPlatform& platform, char16_t* buffer, size_t capacity, const char16_t* name,
                                  const char16_t* extension, bool overwrite);
};

}  // namespace SASM
