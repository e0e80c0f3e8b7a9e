#pragma once
#include "engine/win32/WindowsApi.h"

#include <oleauto.h>

namespace SASM {

// Owns a BSTR.
class ScopedBstr {
 public:
  ScopedBstr() = default;
  // A copy of text; null when text is null or memory is short.
  explicit ScopedBstr(const wchar_t* text) : text_(SysAllocString(text)) {}
  ScopedBstr(const ScopedBstr&) = delete;
  ScopedBstr& operator=(const ScopedBstr&) = delete;
  ScopedBstr(ScopedBstr&& other) noexcept : text_(other.release()) {}
  ScopedBstr& operator=(ScopedBstr&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~ScopedBstr() { reset(); }

  BSTR get() const { return text_; }
  explicit operator bool() const { return text_ != nullptr; }
  // For an out-argument: frees what is held first.
  BSTR* receive() {
    reset();
    return &text_;
  }
  void reset(BSTR text = nullptr) {
    if (text_) SysFreeString(text_);
    text_ = text;
  }
  // Gives the string up without freeing it, as for a caller's out-argument.
  BSTR release() {
    BSTR text = text_;
    text_ = nullptr;
    return text;
  }

 private:
  BSTR text_ = nullptr;
};

}  // namespace SASM
