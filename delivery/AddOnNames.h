#pragma once
// What the broker accepts as an add-on product's name and download URL.
#include <string>
#include <string_view>

namespace SASM {

class AddOnNames {
 public:
  static constexpr size_t kMaxNameBytes = 31;
  static constexpr size_t kMaxLabelBytes = 32;

  // 1 to 31 ASCII letters and digits; null is not a name. Each character is
  // judged as it stands, so no code page can map a foreign one onto a letter.
  static bool IsValidProductName(const char16_t* name);
  // "http://" or "https://" (secure), one label of 1 to 32 lower-case letters,
  // digits and "-", then the vendor's add-on domain and the path from its "/".
  // The outputs are cleared first and set only on success.
  static bool ParseProductUrl(const char* url, std::string& host, std::string& path, bool& secure);
};

}  // namespace SASM
