#include "broker/ShortcutEntitlement.h"

#include <vector>

namespace SASM {

bool ShortcutEntitlement::Allows(const ShortcutByteArray& signedData, std::string_view markup) const {
  if (!signedData.IsWellFormed() || signedData.shape.count == 0 || !signedData.data) return false;
  std::vector<uint8_t> content;
  if (!check_.Verify(signedData.data, signedData.shape.count, content)) return false;
  return std::string_view(reinterpret_cast<const char*>(content.data()), content.size()) == markup;
}

}  // namespace SASM
