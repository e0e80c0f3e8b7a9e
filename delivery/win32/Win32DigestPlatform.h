#pragma once
// The product hash over the platform: SHA-256 from the primitive provider,
// Base64 from the certificate library's text encoder.
#include "delivery/IDigestPlatform.h"
#include "delivery/win32/Win32Sha256.h"

namespace SASM {

class Win32DigestPlatform : public IDigestPlatform {
 public:
  bool BeginHash() override { return hash_.Begin(); }
  bool HashData(const uint8_t* data, size_t size) override { return hash_.Update(data, size); }
  bool FinishHash(uint8_t (&hash)[kHashSize]) override { return hash_.Finish(hash); }
  bool ToBase64(const uint8_t* data, size_t size, std::string& text) override;

 private:
  Win32Sha256 hash_;
};

}  // namespace SASM
