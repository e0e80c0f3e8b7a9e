#include "delivery/win32/Win32Sha256.h"

#include <limits>

namespace SASM {

void Win32Sha256::Reset() {
  if (hash_) BCryptDestroyHash(hash_);
  if (algorithm_) BCryptCloseAlgorithmProvider(algorithm_, 0);
  hash_ = nullptr;
  algorithm_ = nullptr;
}

bool Win32Sha256::Begin() {
  Reset();
  if (!BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&algorithm_, BCRYPT_SHA256_ALGORITHM, nullptr, 0))) {
    algorithm_ = nullptr;
    return false;
  }
  if (!BCRYPT_SUCCESS(BCryptCreateHash(algorithm_, &hash_, nullptr, 0, nullptr, 0, 0))) {
    hash_ = nullptr;
    Reset();
    return false;
  }
  return true;
}

bool Win32Sha256::Update(const uint8_t* data, size_t size) {
  if (!hash_) return false;
  // The provider takes 32-bit lengths.
  while (size > 0) {
    const ULONG chunk = size > std::numeric_limits<ULONG>::max() ? std::numeric_limits<ULONG>::max()
                                                                  : static_cast<ULONG>(size);
    if (!BCRYPT_SUCCESS(BCryptHashData(hash_, const_cast<PUCHAR>(data), chunk, 0))) return false;
    data += chunk;
    size -= chunk;
  }
  return true;
}

bool Win32Sha256::Finish(uint8_t (&digest)[kSize]) {
  const bool finished = hash_ && BCRYPT_SUCCESS(BCryptFinishHash(hash_, digest, kSize, 0));
  Reset();
  return finished;
}

}  // namespace SASM
