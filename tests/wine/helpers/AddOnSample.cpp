// The add-on product of the delivery tests, stored and started by the broker.
//   LumenSample [RECORD [LIFETIME-MS]]
// Holds "HalcyonicsMutexGammalumensample" while it runs, as every add-on must,
// writes its command line to RECORD (and to standard output when it has one),
// pumps messages so that a starter waiting for it to be idle goes on, and ends
// after LIFETIME-MS (3 s unless given).
#include "engine/win32/WindowsApi.h"

#include <shellapi.h>

#include <cwchar>
#include <string>

#include "engine/win32/ScopedHandle.h"

namespace {

void Record(const wchar_t* path, const std::wstring& text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(size > 0 ? static_cast<size_t>(size - 1) : 0, '\0');
  if (size > 1) WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), size, nullptr, nullptr);
  bytes += "\n";
  DWORD written = 0;
  HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  if (out && out != INVALID_HANDLE_VALUE) WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (!path) return;
  SASM::ScopedHandle file(
      CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file) WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  SASM::ScopedHandle running(CreateMutexW(nullptr, TRUE, L"HalcyonicsMutexGammalumensample"));
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  const wchar_t* record = arguments && count > 1 ? arguments[1] : nullptr;
  const UINT lifetime = arguments && count > 2 ? static_cast<UINT>(_wtoi(arguments[2])) : 3000;
  Record(record, GetCommandLineW());

  SetTimer(nullptr, 0, lifetime, nullptr);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (message.message == WM_TIMER) break;
    DispatchMessageW(&message);
  }
  LocalFree(arguments);
  return 0;
}
