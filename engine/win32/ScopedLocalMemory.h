#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns memory the system allocated with LocalAlloc for us (security descriptors, merged access lists).
class ScopedLocalMemory {
 public:
  ScopedLocalMemory() = default;
  explicit ScopedLocalMemory(void* memory) : memory_(memory) {}
  ScopedLocalMemory(const ScopedLocalMemory&) = delete;
  ScopedLocalMemory& operator=(const ScopedLocalMemory&) = delete;
  ~ScopedLocalMemory() { reset(); }

  void* get() const { return memory_; }
  void reset(void* memory = nullptr) {
    if (memory_) LocalFree(memory_);
    memory_ = memory;
  }

 private:
  void* memory_ = nullptr;
};

}  // namespace SASM
