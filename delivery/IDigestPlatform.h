#pragma once
// Seam for the product hash: one running SHA-256 and its Base64 text.
#include <cstddef>
#include <cstdint>
#include <string>

namespace SASM {

class IDigestPlatform {
 public:
  static constexpr size_t kHashSize = 32;

  virtual ~IDigestPlatform() = default;
  // Starts a new hash, dropping any unfinished one.
  virtual bool BeginHash() = 0;
  virtual bool HashData(const uint8_t* data, size_t size) = 0;
  virtual bool FinishHash(uint8_t (&hash)[kHashSize]) = 0;
  // Standard alphabet, "=" padding, no line breaks.
  virtual bool ToBase64(const uint8_t* data, size_t size, std::string& text) = 0;
};

}  // namespace SASM
