#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns a FindFirstFileW search.
class ScopedFindHandle {
 public:
  explicit ScopedFindHandle(HANDLE find) : find_(find) {}
  ScopedFindHandle(const ScopedFindHandle&) = delete;
  ScopedFindHandle& operator=(const ScopedFindHandle&) = delete;
  ~ScopedFindHandle() {
    if (valid()) FindClose(find_);
  }
  HANDLE get() const { return find_; }
  bool valid() const { return find_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE find_;
};

}  // namespace SASM
