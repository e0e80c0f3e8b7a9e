#pragma once
// Whether a client may make an internet shortcut: it must hold a message
// signed through the add-on channel whose content is exactly the shortcut's
// mark-up, so only shortcuts the vendor has signed for can be made.
#include <string_view>

#include "broker/ShortcutByteArray.h"
#include "broker/SignedMessageCheck.h"

namespace SASM {

class ShortcutEntitlement {
 public:
  explicit ShortcutEntitlement(SignedMessageCheck& check) : check_(check) {}

  // A well-formed, non-empty array that verifies and signs `markup`, byte for byte.
  bool Allows(const ShortcutByteArray& signedData, std::string_view markup) const;

 private:
  SignedMessageCheck& check_;
};

}  // namespace SASM
