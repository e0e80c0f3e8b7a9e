#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns a service control manager or service handle.
class ScopedServiceHandle {
 public:
  ScopedServiceHandle() = default;
  explicit ScopedServiceHandle(SC_HANDLE handle) : handle_(handle) {}
  ScopedServiceHandle(const ScopedServiceHandle&) = delete;
  ScopedServiceHandle& operator=(const ScopedServiceHandle&) = delete;
  ~ScopedServiceHandle() { reset(); }

  SC_HANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  void reset(SC_HANDLE handle = nullptr) {
    if (handle_) CloseServiceHandle(handle_);
    handle_ = handle;
  }

 private:
  SC_HANDLE handle_ = nullptr;
};

}  // namespace SASM
