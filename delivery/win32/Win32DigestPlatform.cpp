#include "delivery/win32/Win32DigestPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <wincrypt.h>

namespace SASM {

bool Win32DigestPlatform::ToBase64(const uint8_t* data, size_t size, std::string& text) {
  text.clear();
  constexpr DWORD kFlags = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  DWORD length = 0;
  if (size > MAXDWORD || !CryptBinaryToStringA(data, static_cast<DWORD>(size), kFlags, nullptr, &length) ||
      length == 0)
    return false;
  // The size call counts the NUL; the fill call answers without it.
  std::string encoded(length, '\0');
  if (!CryptBinaryToStringA(data, static_cast<DWORD>(size), kFlags, encoded.data(), &length)) return false;
  encoded.resize(length < encoded.size() ? length : encoded.size());
  while (!encoded.empty() && encoded.back() == '\0') encoded.pop_back();
  text = std::move(encoded);
  return true;
}

}  // namespace SASM
