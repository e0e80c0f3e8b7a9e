#pragma once
// The add-on channel's signature check for the broker: the host's anchor
// override when it names one, else the built-in anchor.
#include "broker/SignedMessageCheck.h"

namespace SASM {

class HostCallbacks;

class Win32SignedMessageCheck : public SignedMessageCheck {
 public:
  // host may be null: then only the built-in anchor counts.
  explicit Win32SignedMessageCheck(HostCallbacks* host) : host_(host) {}

  bool Verify(const uint8_t* message, size_t size, std::vector<uint8_t>& content) override;

 private:
  HostCallbacks* host_;
};

}  // namespace SASM
