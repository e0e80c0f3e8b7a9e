#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns a loaded library and frees it.
class ScopedLibrary {
 public:
  ScopedLibrary() = default;
  explicit ScopedLibrary(HMODULE library) : library_(library) {}
  ScopedLibrary(const ScopedLibrary&) = delete;
  ScopedLibrary& operator=(const ScopedLibrary&) = delete;
  ~ScopedLibrary() { reset(); }

  HMODULE get() const { return library_; }
  explicit operator bool() const { return library_ != nullptr; }
  void reset(HMODULE library = nullptr) {
    if (library_) FreeLibrary(library_);
    library_ = library;
  }

 private:
  HMODULE library_ = nullptr;
};

}  // namespace SASM
