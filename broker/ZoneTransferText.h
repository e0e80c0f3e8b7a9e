#pragma once
// The text of a file's zone mark as the platform keeps it in the file's
// "Zone.Identifier" stream: a [ZoneTransfer] section with a ZoneId line.
#include <cstdint>
#include <string>
#include <string_view>

namespace SASM {

class ZoneTransferText {
 public:
  static constexpr uint32_t kInternetZone = 3;
  static constexpr std::u16string_view kStreamSuffix = u":Zone.Identifier";

  static std::string Compose(uint32_t zone);
  // The ZoneId of the [ZoneTransfer] section; false when the text has none.
  // Section and key match without case, as the platform reads them.
  static bool ParseZoneId(std::string_view text, uint32_t& zone);
};

}  // namespace SASM
