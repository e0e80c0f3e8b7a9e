#pragma once
// A one-off binding: one library and one function in it, found by name on
// first use and kept for the life of the process. A bare library name loads
// from the System folder only.
#include "engine/win32/WindowsApi.h"

namespace SASM {

class LateBoundFunction {
 public:
  // Both names must outlive the binding; literals do.
  LateBoundFunction(const wchar_t* library, const char* function) : library_(library), function_(function) {}
  LateBoundFunction(const LateBoundFunction&) = delete;
  LateBoundFunction& operator=(const LateBoundFunction&) = delete;

  // The function's address, or null when the library or the function can't be found;
  // a failed lookup is tried again on the next use.
  FARPROC Get();
  template <typename Signature>
  Signature As() {
    return reinterpret_cast<Signature>(reinterpret_cast<void*>(Get()));
  }
  HMODULE Module() const { return module_; }

  // LoadLibraryW after a bare name (no "\") is joined to the System folder (CSIDL 37);
  // null when that folder can't be found.
  static HMODULE LoadShellLibrary(const wchar_t* library);

 private:
  const wchar_t* library_;
  const char* function_;
  HMODULE module_ = nullptr;
  FARPROC entry_ = nullptr;
};

}  // namespace SASM
