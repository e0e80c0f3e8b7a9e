#pragma once
// The shortcut and icon family as plain logic. A sandboxed player may ask for
// a path in the icon cache, a desktop shortcut to the vendor's redirector and,
// with a signed entitlement, a shortcut that opens an address in the default
// browser. A shortcut is a lasting foothold on the user's machine, so every
// refusal answers the same code and says nothing of which test failed.
#include <cstdint>
#include <string>

#include "broker/ShortcutByteArray.h"
#include "broker/ShortcutEntitlement.h"
#include "broker/ShortcutPlatform.h"
#include "broker/ShortcutRateLimit.h"

namespace SASM {

class BrokerShortcutMethods {
 public:
  // The places of `flags`, saved in this order; the pin goes with the quick launch shortcut.
  static constexpr uint32_t kDesktop = 1;
  static constexpr uint32_t kPrograms = 2;
  static constexpr uint32_t kQuickLaunch = 4;
  static constexpr uint32_t kTaskbarPin = 8;

  // rateLimit is the process's one limit, shared by every client.
  BrokerShortcutMethods(ShortcutPlatform& platform, ShortcutRateLimit& rateLimit, SignedMessageCheck& signatures);
  BrokerShortcutMethods(const BrokerShortcutMethods&) = delete;
  BrokerShortcutMethods& operator=(const BrokerShortcutMethods&) = delete;

  // A free (or, with overwrite, the plain) ".ico" path for the name in the
  // icon cache, which is made when missing. Nothing is written there.
  int32_t CreateIconPath(const char16_t* fileName, bool overwrite, std::u16string& iconPath);
  int32_t CreateDesktopShortcut(const char16_t* fileName, const char16_t* url, const char16_t* iconPath,
                                uint32_t flags);
  int32_t CreateInternetShortcut(const char16_t* fileName, const char16_t* url, const char16_t* iconPath,
                                 const ShortcutByteArray& signedAuthData, const ShortcutByteArray& strings,
                                 uint32_t flags);

 private:
  // The icon cache: the roaming folder and the cache's leaf.
  bool IconCacheFolder(std::u16string& folder);
  struct Endings {
    const char16_t* desktop;
    const char16_t* programs;
    const char16_t* quickLaunch;
  };

  // Saves at each place of `flags` that gets a path, then pins the quick
  // launch copy and deletes it. The first failed save ends with its result.
  int32_t SaveAtPlaces(ShortcutObject& shortcut, const char16_t* name, uint32_t flags, const Endings& endings);
  bool PlaceFolder(uint32_t place, std::u16string& folder);

  ShortcutPlatform& platform_;
  ShortcutRateLimit& rateLimit_;
  ShortcutEntitlement entitlement_;
};

}  // namespace SASM
