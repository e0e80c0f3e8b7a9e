#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns an identity made by AllocateAndInitializeSid; freed through the FreeSid the maker resolved.
class ScopedSid {
 public:
  using FreeFunction = PVOID(WINAPI*)(PSID);

  explicit ScopedSid(FreeFunction freeSid) : free_(freeSid) {}
  ScopedSid(const ScopedSid&) = delete;
  ScopedSid& operator=(const ScopedSid&) = delete;
  ~ScopedSid() {
    if (sid_ && free_) free_(sid_);
  }

  PSID get() const { return sid_; }
  PSID* receive() { return &sid_; }

 private:
  FreeFunction free_;
  PSID sid_ = nullptr;
};

}  // namespace SASM
