// A control library for the Wine suite. Its self-registration counts calls in
// HKCU\Software\LumenUtilTests\TestControl and fails while "RegisterCalls" is
// at most "Failures", so a test chooses how many tries fail.
#include "engine/win32/WindowsApi.h"

namespace {

constexpr wchar_t kKey[] = L"Software\\LumenUtilTests\\TestControl";

DWORD Read(HKEY key, const wchar_t* name) {
  DWORD value = 0, size = sizeof(value), type = 0;
  if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS ||
      type != REG_DWORD)
    return 0;
  return value;
}

// The call's number, counting this one.
DWORD Count(const wchar_t* name, DWORD& failures) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != ERROR_SUCCESS)
    return 0;
  DWORD calls = Read(key, name) + 1;
  failures = Read(key, L"Failures");
  RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&calls), sizeof(calls));
  RegCloseKey(key);
  return calls;
}

}  // namespace

extern "C" __declspec(dllexport) HRESULT __stdcall DllRegisterServer() {
  DWORD failures = 0;
  DWORD calls = Count(L"RegisterCalls", failures);
  return calls <= failures ? E_FAIL : S_OK;
}

extern "C" __declspec(dllexport) HRESULT __stdcall DllUnregisterServer() {
  DWORD failures = 0;
  Count(L"UnregisterCalls", failures);
  return S_OK;
}
