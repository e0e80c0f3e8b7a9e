#pragma once
// char16_t text of the portable core meets wchar_t of the Windows API: both are UTF-16 here.
#include "engine/win32/WindowsApi.h"

#include <string>
#include <string_view>

namespace SASM {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Windows wide text is UTF-16");

inline std::wstring ToWide(std::u16string_view text) {
  return std::wstring(reinterpret_cast<const wchar_t*>(text.data()), text.size());
}

inline std::u16string FromWide(const wchar_t* text, size_t length) {
  return std::u16string(reinterpret_cast<const char16_t*>(text), length);
}

inline std::u16string FromWide(const wchar_t* text) { return text ? FromWide(text, wcslen(text)) : std::u16string(); }

}  // namespace SASM
