#pragma once
// Vendor endpoints and names chosen for this product; the one place to change them.

namespace SASM::Vendor {

// Folder under the player's data root that holds the vendor's settings; named after a vendor web domain.
inline constexpr char16_t kSettingsDirectory[] = u"www.halcyonics.example";
inline constexpr char kWebDomain[] = "www.halcyonics.example";
inline constexpr char kDownloadHost[] = "download.halcyonics.example";
inline constexpr char kRedirectHost[] = "redirect.halcyonics.example";
// Add-on downloads come only from a single-label host directly beneath this domain, written
// with its leading "." and trailing "/" as a URL's text holds it.
inline constexpr char kAddOnDomain[] = ".halcyonics.example/";

// Pages named by the Add/Remove Programs entry.
inline constexpr char16_t kSupportUrl[] = u"https://www.halcyonics.example/go/lumenplayer_support/";
inline constexpr char16_t kHomeUrl[] = u"https://www.halcyonics.example/";
inline constexpr char16_t kUpdateUrl[] = u"https://www.halcyonics.example/go/getlumenplayer/";
// The plug-in's id under the browsers' plug-in key: the vendor domain and the product.
inline constexpr char16_t kPluginId[] = u"@halcyonics.example/LumenPlayer";

// Hosts of the links in the installer's string table (resources/strings), besides
// kWebDomain: the knowledge base, the player's download centre, the labs, and the
// update site that string 88 addresses by https.
inline constexpr char kKnowledgeBaseHost[] = "kb.halcyonics.example";
inline constexpr char kPlayerDownloadHost[] = "get.halcyonics.example";
inline constexpr char kLabsHost[] = "labs.halcyonics.example";
inline constexpr char kUpdateHost[] = "update.halcyonics.example";

}  // namespace SASM::Vendor
