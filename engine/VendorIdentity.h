#pragma once
// Vendor endpoints and names chosen for this product; the one place to change them.

namespace SASM::Vendor {

// Folder under the player's data root that holds the vendor's settings; named after a vendor web domain.
inline constexpr char16_t kSettingsDirectory[] = u"www.halcyonics.example";
inline constexpr char kWebDomain[] = "www.halcyonics.example";
inline constexpr char kDownloadHost[] = "download.halcyonics.example";
inline constexpr char kRedirectHost[] = "redirect.halcyonics.example";

}  // namespace SASM::Vendor
