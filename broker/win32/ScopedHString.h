#pragma once
// Owns one runtime string (HSTRING). The string functions live in
// "combase.dll" and are found at run time: where they are missing no string
// can be made, and every use sees a null one.
#include "engine/win32/WindowsApi.h"

#include <winstring.h>

#include <string>

namespace SASM {

class ScopedHString {
 public:
  ScopedHString() = default;
  // Null when the text can't be made into a runtime string.
  explicit ScopedHString(const wchar_t* text);
  ScopedHString(const ScopedHString&) = delete;
  ScopedHString& operator=(const ScopedHString&) = delete;
  ~ScopedHString();

  HSTRING get() const { return value_; }
  // For an out-argument; the string must be empty.
  HSTRING* receive() { return &value_; }
  // The characters, empty for a null string.
  std::u16string Text() const;

  // RoGetActivationFactory of a runtime class; E_NOTIMPL where the runtime is missing.
  static HRESULT GetActivationFactory(const wchar_t* className, REFIID iid, void** factory);

 private:
  HSTRING value_ = nullptr;
};

}  // namespace SASM
