#pragma once
#include "engine/win32/WindowsApi.h"

#include <cstddef>

namespace SASM {

// Owns one reference to a COM interface.
template <typename T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  // Takes over a reference the caller already holds.
  explicit ComPtr(T* pointer) : pointer_(pointer) {}
  ComPtr(const ComPtr&) = delete;
  ComPtr& operator=(const ComPtr&) = delete;
  ComPtr(ComPtr&& other) noexcept : pointer_(other.release()) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~ComPtr() { reset(); }

  T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  // For an out-argument: drops what is held first.
  T** receive() {
    reset();
    return &pointer_;
  }
  void** receiveVoid() { return reinterpret_cast<void**>(receive()); }

  void reset(T* pointer = nullptr) {
    if (pointer_) pointer_->Release();
    pointer_ = pointer;
  }
  // Gives the reference up without releasing it.
  T* release() {
    T* pointer = pointer_;
    pointer_ = nullptr;
    return pointer;
  }

 private:
  T* pointer_ = nullptr;
};

}  // namespace SASM
