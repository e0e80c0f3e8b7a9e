// The shortcut family's text tests over arbitrary text: names, addresses, icon
// paths, the mark-up search and unique paths in small buffers, then a whole
// internet shortcut request built from the same pieces over the fakes.
//
// Input: one byte of capacity for MakeUniquePath, one byte of taken numbers,
// then UTF-16 (little-endian) text whose NUL units split it into a name, an
// address and an icon path.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "broker/BrokerShortcutMethods.h"
#include "broker/ShortcutRules.h"
#include "engine/MString.h"
#include "tests/fakes/FakeShortcutPlatform.h"
#include "tests/fakes/FakeSignedMessageCheck.h"

using namespace SASM;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const size_t capacity = data[0];
  const int taken = data[1] % 8;
  std::vector<std::u16string> parts(1);
  for (size_t i = 2; i + 1 < size; i += 2) {
    char16_t unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    if (unit == 0 && parts.size() < 3)
      parts.emplace_back();
    else if (unit != 0)
      parts.back().push_back(unit);
  }
  parts.resize(3);
  const std::u16string& name = parts[0];
  const std::u16string& url = parts[1];
  const std::u16string& icon = parts[2];

  ShortcutRules::IsDesktopShortcutName(name);
  ShortcutRules::IsRedirectAddress(url);
  ShortcutRules::IsInternetShortcutName(name);
  ShortcutRules::IsWebUrl(url);
  ShortcutRules::IsIconCachePath(icon, u"C:\\Users\\a\\AppData\\Roaming", name);

  FakeShortcutPlatform platform;
  std::u16string folder = u"C:\\D";
  std::u16string plain = folder + u"\\" + name + u".url";
  if (taken > 0) platform.files.insert(plain);
  for (int n = 2; n <= taken; ++n)
    platform.files.insert(folder + u"\\" + name + u" (" + static_cast<char16_t>(u'0' + n) + u").url");
  std::vector<char16_t> buffer(capacity + 1, u'#');
  const size_t folderUnits = std::min(folder.size(), capacity ? capacity - 1 : 0);
  std::copy(folder.begin(), folder.begin() + folderUnits, buffer.begin());
  if (capacity) buffer[folderUnits] = u'\0';
  ShortcutRules::MakeUniquePath(platform, buffer.data(), capacity, name.c_str(), u".url", false);
  if (buffer[capacity] != u'#') __builtin_trap();

  std::string markup;
  if (ShortcutRules::BuildMarkup(MString(url.c_str()).ToUtf8(), MString(name.c_str()).ToUtf8(), markup)) {
    const std::string strings = "<" + markup.substr(0, markup.size() / 2) + markup;
    ShortcutByteArray array{
        true, {1, 1, 0, static_cast<uint32_t>(strings.size())}, reinterpret_cast<const uint8_t*>(strings.data())};
    if (!ShortcutRules::Contains(array, markup)) __builtin_trap();

    ShortcutRateLimit limit;
    FakeSignedMessageCheck signatures;
    signatures.signedContents["signed"] = markup;
    const std::string message = "signed";
    ShortcutByteArray signedArray{true, {1, 1, 0, 6}, reinterpret_cast<const uint8_t*>(message.data())};
    BrokerShortcutMethods methods(platform, limit, signatures);
    methods.CreateInternetShortcut(name.c_str(), url.c_str(), icon.c_str(), signedArray, array, 7);
    methods.CreateDesktopShortcut(name.c_str(), url.c_str(), icon.c_str(), 15);
  }
  return 0;
}
