#pragma once
#include "engine/win32/WindowsApi.h"

namespace SASM {

// Owns a view mapped with MapViewOfFile.
class ScopedMappedView {
 public:
  ScopedMappedView() = default;
  explicit ScopedMappedView(void* view) : view_(view) {}
  ScopedMappedView(const ScopedMappedView&) = delete;
  ScopedMappedView& operator=(const ScopedMappedView&) = delete;
  ~ScopedMappedView() { reset(); }

  void* get() const { return view_; }
  void reset(void* view = nullptr) {
    if (view_) UnmapViewOfFile(view_);
    view_ = view;
  }

 private:
  void* view_ = nullptr;
};

}  // namespace SASM
