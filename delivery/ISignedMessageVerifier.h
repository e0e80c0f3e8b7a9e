#pragma once
// Seam for the check of a signed message (PKCS#7, content inside) against a
// trust anchor given as one DER certificate.
#include <cstdint>

#include "delivery/ByteBuffer.h"

namespace SASM {

class ISignedMessageVerifier {
 public:
  virtual ~ISignedMessageVerifier() = default;
  // True when the signature, the content's digest and the chain up to the
  // anchor are good; only then does content receive the signed content.
  virtual bool VerifySignedMessage(const uint8_t* message, uint32_t size, ByteBuffer& content,
                                   const uint8_t* anchor, uint32_t anchorSize) = 0;
};

}  // namespace SASM
