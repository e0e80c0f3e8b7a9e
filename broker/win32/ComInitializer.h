#pragma once
// COM for the length of a scope: CoInitialize on construction, and the
// matching CoUninitialize only when that succeeded (S_FALSE included).
#include "engine/win32/WindowsApi.h"

#include <objbase.h>

namespace SASM {

class ComInitializer {
 public:
  ComInitializer() : result_(CoInitialize(nullptr)) {}
  ComInitializer(const ComInitializer&) = delete;
  ComInitializer& operator=(const ComInitializer&) = delete;
  ~ComInitializer() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }

  bool Succeeded() const { return SUCCEEDED(result_); }
  HRESULT Result() const { return result_; }

 private:
  HRESULT result_;
};

}  // namespace SASM
