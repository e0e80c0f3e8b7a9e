#include "broker/BrokerShortcutMethods.h"

#include <algorithm>

#include "broker/BrokerHresult.h"
#include "broker/ShortcutRules.h"
#include "engine/MString.h"

namespace SASM {
namespace {

constexpr int32_t kRefused = BrokerHresult::kShortcutRefused;

bool IsEmpty(const char16_t* text) { return !text || *text == u'\0'; }
bool Failed(int32_t result) { return result < 0; }

}  // namespace

BrokerShortcutMethods::BrokerShortcutMethods(ShortcutPlatform& platform, ShortcutRateLimit& rateLimit,
                                             SignedMessageCheck& signatures)
    : platform_(platform), rateLimit_(rateLimit), entitlement_(signatures) {}

bool BrokerShortcutMethods::IconCacheFolder(std::u16string& folder) {
  if (!platform_.GetFolderPath(ShortcutRules::kAppDataFolder, folder)) return false;
  folder += ShortcutRules::kIconCacheLeaf;
  return true;
}

int32_t BrokerShortcutMethods::CreateIconPath(const char16_t* fileName, bool overwrite, std::u16string& iconPath) {
  std::u16string folder;
  if (!IconCacheFolder(folder) || folder.size() >= ShortcutRules::kPathCapacity) return BrokerHresult::kFail;
  platform_.CreateDirectoryTree(folder.c_str());
  char16_t buffer[ShortcutRules::kPathCapacity] = {};
  std::copy(folder.begin(), folder.end(), buffer);
  if (!ShortcutRules::MakeUniquePath(platform_, buffer, ShortcutRules::kPathCapacity, fileName ? fileName : u"",
                                     u".ico", overwrite))
    return BrokerHresult::kFail;
  iconPath = buffer;
  return BrokerHresult::kOk;
}

int32_t BrokerShortcutMethods::CreateDesktopShortcut(const char16_t* fileName, const char16_t* url,
                                                     const char16_t* iconPath, uint32_t flags) {
  if (!rateLimit_.Admit(platform_.TickCount())) return kRefused;
  if (IsEmpty(fileName) || IsEmpty(url) || flags == 0) return kRefused;
  if (!ShortcutRules::IsDesktopShortcutName(fileName) || !ShortcutRules::IsRedirectAddress(url)) return kRefused;

  std::unique_ptr<ShortcutObject> shortcut;
  int32_t result = platform_.CreateInternetShortcut(shortcut);
  if (Failed(result)) return result;
  if (!shortcut) return BrokerHresult::kFail;
  result = shortcut->SetUrl(url);
  if (Failed(result)) return result;
  if (!IsEmpty(iconPath)) {
    result = shortcut->SetIconLocation(iconPath, 0);
    if (Failed(result)) return result;
  }
  return SaveAtPlaces(*shortcut, fileName, flags, Endings{u".url", u".lnk", u".lnk"});
}

int32_t BrokerShortcutMethods::CreateInternetShortcut(const char16_t* fileName, const char16_t* url,
                                                      const char16_t* iconPath,
                                                      const ShortcutByteArray& signedAuthData,
                                                      const ShortcutByteArray& strings, uint32_t flags) {
  if (IsEmpty(fileName) || IsEmpty(url) || IsEmpty(iconPath) || !signedAuthData.present || !strings.present ||
      flags == 0)
    return kRefused;

  std::u16string canonicalName;
  if (!platform_.PathCanonicalize(fileName, canonicalName) || canonicalName != fileName) return kRefused;
  if (!ShortcutRules::IsInternetShortcutName(fileName)) return kRefused;

  std::u16string canonicalUrl;
  if (Failed(platform_.UrlCanonicalize(url, ShortcutRules::kUrlCanonicalFlags, ShortcutRules::kPathCapacity,
                                       canonicalUrl)) ||
      !ShortcutRules::IsWebUrl(canonicalUrl))
    return kRefused;

  std::u16string appData;
  if (!platform_.GetFolderPath(ShortcutRules::kAppDataFolder, appData) ||
      !ShortcutRules::IsIconCachePath(iconPath, appData, fileName))
    return kRefused;

  if (!strings.IsWellFormed()) return kRefused;
  const std::string nameUtf8 = MString(fileName).ToUtf8();
  const std::string urlUtf8 = MString(canonicalUrl.c_str()).ToUtf8();
  if (nameUtf8.size() >= ShortcutRules::kNameLimit || urlUtf8.size() >= ShortcutRules::kUrlBytes) return kRefused;
  std::string markup;
  if (!ShortcutRules::BuildMarkup(urlUtf8, nameUtf8, markup) || !ShortcutRules::Contains(strings, markup))
    return kRefused;

  if (!entitlement_.Allows(signedAuthData, markup)) return kRefused;

  std::u16string browser;
  int32_t result = platform_.GetDefaultBrowser(browser);
  if (Failed(result)) return result;
  std::unique_ptr<ShortcutObject> link;
  result = platform_.CreateShellLink(link);
  if (Failed(result)) return result;
  if (!link) return BrokerHresult::kFail;
  result = link->SetPath(browser.c_str());
  if (!Failed(result)) result = link->SetArguments(canonicalUrl.c_str());
  if (!Failed(result)) result = link->SetIconLocation(iconPath, 0);
  if (Failed(result)) return result;
  return SaveAtPlaces(*link, fileName, flags, Endings{u".lnk", u".lnk", u".lnk"});
}

bool BrokerShortcutMethods::PlaceFolder(uint32_t place, std::u16string& folder) {
  switch (place) {
    case kDesktop:
      return platform_.GetFolderPath(ShortcutRules::kDesktopFolder, folder);
    case kPrograms:
      return platform_.GetFolderPath(ShortcutRules::kProgramsFolder, folder);
    case kQuickLaunch:
      if (!platform_.GetFolderPath(ShortcutRules::kAppDataFolder, folder)) return false;
      folder += ShortcutRules::kQuickLaunchLeaf;
      return true;
  }
  return false;
}

int32_t BrokerShortcutMethods::SaveAtPlaces(ShortcutObject& shortcut, const char16_t* name, uint32_t flags,
                                            const Endings& endings) {
  const struct {
    uint32_t place;
    const char16_t* ending;
  } places[] = {{kDesktop, endings.desktop}, {kPrograms, endings.programs}, {kQuickLaunch, endings.quickLaunch}};

  std::u16string quickLaunchCopy;
  for (const auto& place : places) {
    if (!(flags & place.place)) continue;
    std::u16string folder;
    if (!PlaceFolder(place.place, folder) || folder.size() >= ShortcutRules::kPathCapacity) continue;
    char16_t buffer[ShortcutRules::kPathCapacity] = {};
    std::copy(folder.begin(), folder.end(), buffer);
    if (!ShortcutRules::MakeUniquePath(platform_, buffer, ShortcutRules::kPathCapacity, name, place.ending, false))
      continue;
    const int32_t result = shortcut.Save(buffer, true);
    if (Failed(result)) return result;
    if (place.place == kQuickLaunch) quickLaunchCopy = buffer;
  }
  // The pin is what remains: the quick launch file only carried it.
  if (!quickLaunchCopy.empty() && (flags & kTaskbarPin)) {
    platform_.PinToTaskbar(quickLaunchCopy.c_str());
    platform_.DeleteFile(quickLaunchCopy.c_str());
  }
  return BrokerHresult::kOk;
}

}  // namespace SASM
