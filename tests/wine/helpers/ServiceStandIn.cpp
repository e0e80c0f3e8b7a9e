// A stand-in for the update and feedback service executables, for the Wine suite.
// Each run appends its arguments, one line per run, to its own path + ".switches",
// and exits with the number in its own path + ".exitcode" (0 when there is none).
#include "engine/win32/WindowsApi.h"

#include <cstdlib>
#include <string>

#include "engine/win32/ScopedHandle.h"

namespace {

std::wstring OwnPath() {
  wchar_t self[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, self, MAX_PATH);
  return std::wstring(self, n);
}

void AppendLine(const std::wstring& path, const std::wstring& line) {
  SASM::ScopedHandle file(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return;
  std::string bytes(line.begin(), line.end());
  bytes += "\n";
  DWORD written = 0;
  WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

int ChosenExitCode(const std::wstring& path) {
  SASM::ScopedHandle file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return 0;
  char text[32] = {};
  DWORD got = 0;
  ReadFile(file.get(), text, sizeof(text) - 1, &got, nullptr);
  return std::atoi(text);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring self = OwnPath();
  std::wstring line;
  for (int i = 1; i < argc; ++i) line += (i > 1 ? L" " : L"") + std::wstring(argv[i]);
  AppendLine(self + L".switches", line);
  return ChosenExitCode(self + L".exitcode");
}
