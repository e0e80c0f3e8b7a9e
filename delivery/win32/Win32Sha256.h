#pragma once
// One running SHA-256 from the platform's primitive provider.
#include "engine/win32/WindowsApi.h"

#include <bcrypt.h>

#include <cstddef>
#include <cstdint>

namespace SASM {

class Win32Sha256 {
 public:
  static constexpr size_t kSize = 32;

  Win32Sha256() = default;
  Win32Sha256(const Win32Sha256&) = delete;
  Win32Sha256& operator=(const Win32Sha256&) = delete;
  ~Win32Sha256() { Reset(); }

  // Starts over; false when the provider cannot be had.
  bool Begin();
  bool Update(const uint8_t* data, size_t size);
  // Ends the hash; Begin starts the next one.
  bool Finish(uint8_t (&digest)[kSize]);

 private:
  void Reset();

  BCRYPT_ALG_HANDLE algorithm_ = nullptr;
  BCRYPT_HASH_HANDLE hash_ = nullptr;
};

}  // namespace SASM
