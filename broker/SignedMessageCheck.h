#pragma once
// The add-on channel's signature check as the broker needs it: a PKCS#7 signed
// message, content inside, verified to the channel's trust anchor.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace SASM {

class SignedMessageCheck {
 public:
  virtual ~SignedMessageCheck() = default;
  // True when the message's signature and chain are good; `content` then
  // holds the bytes it signs.
  virtual bool Verify(const uint8_t* message, size_t size, std::vector<uint8_t>& content) = 0;
};

}  // namespace SASM
