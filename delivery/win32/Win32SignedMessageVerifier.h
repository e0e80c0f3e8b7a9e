#pragma once
// The signed-message check over the platform's message and certificate
// functions. The chain is walked by hand through the certificates the message
// carries: no system root, revocation or chain engine takes part, so only the
// given anchor can make a message good.
#include "delivery/ISignedMessageVerifier.h"

namespace SASM {

class Win32SignedMessageVerifier : public ISignedMessageVerifier {
 public:
  // At most this many certificates above the signer before the anchor.
  static constexpr int kMaxLinks = 8;

  bool VerifySignedMessage(const uint8_t* message, uint32_t size, ByteBuffer& content, const uint8_t* anchor,
                           uint32_t anchorSize) override;

  // Whether the signer's signed messageDigest attribute equals the SHA-256 of
  // content. A message without signed attributes has its content signed
  // directly and passes. Some platforms never compare the attribute themselves.
  static bool SignedDigestMatches(const uint8_t* message, uint32_t size, const uint8_t* content,
                                  size_t contentSize);
};

}  // namespace SASM
