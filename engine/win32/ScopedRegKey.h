#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns an open registry key.
class ScopedRegKey {
 public:
  ScopedRegKey() = default;
  explicit ScopedRegKey(HKEY key) : key_(key) {}
  ScopedRegKey(const ScopedRegKey&) = delete;
  ScopedRegKey& operator=(const ScopedRegKey&) = delete;
  ~ScopedRegKey() { reset(); }
  HKEY get() const { return key_; }
  HKEY* receive() {
    reset();
    return &key_;
  }
  void reset() {
    if (key_) RegCloseKey(key_);
    key_ = nullptr;
  }

 private:
  HKEY key_ = nullptr;
};

}  // namespace SASM
