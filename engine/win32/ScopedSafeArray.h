#pragma once
#include "engine/win32/WindowsApi.h"

#include <oleauto.h>

namespace SASM {

// Owns a SAFEARRAY and destroys it with its data.
class ScopedSafeArray {
 public:
  ScopedSafeArray() = default;
  explicit ScopedSafeArray(SAFEARRAY* array) : array_(array) {}
  ScopedSafeArray(const ScopedSafeArray&) = delete;
  ScopedSafeArray& operator=(const ScopedSafeArray&) = delete;
  ScopedSafeArray(ScopedSafeArray&& other) noexcept : array_(other.release()) {}
  ScopedSafeArray& operator=(ScopedSafeArray&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~ScopedSafeArray() { reset(); }

  SAFEARRAY* get() const { return array_; }
  explicit operator bool() const { return array_ != nullptr; }
  // For an out-argument: destroys what is held first.
  SAFEARRAY** receive() {
    reset();
    return &array_;
  }
  void reset(SAFEARRAY* array = nullptr) {
    if (array_) SafeArrayDestroy(array_);
    array_ = array;
  }
  // Gives the array up without destroying it, as for a caller's out-argument.
  SAFEARRAY* release() {
    SAFEARRAY* array = array_;
    array_ = nullptr;
    return array;
  }

 private:
  SAFEARRAY* array_ = nullptr;
};

}  // namespace SASM
