#include "engine/win32/Win32FileSystem.h"

#include "engine/win32/WindowsApi.h"

#include "engine/win32/ScopedFindHandle.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

HANDLE ToHandle(FileHandleId id) { return reinterpret_cast<HANDLE>(static_cast<uintptr_t>(id)); }

int32_t LastError() { return static_cast<int32_t>(GetLastError()); }

}  // namespace

int32_t Win32FileSystem::Open(std::u16string_view path, int32_t mode, FileHandleId& handle) {
  DWORD access;
  switch (mode) {
    case 2: access = FILE_APPEND_DATA | GENERIC_READ; break;
    case 3: access = GENERIC_WRITE; break;
    case 4: access = GENERIC_READ; break;
    default: access = GENERIC_READ | GENERIC_WRITE; break;
  }
  HANDLE file = CreateFileW(ToWide(path).c_str(), access, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return LastError();
  if (mode == 2) SetFilePointer(file, 0, nullptr, FILE_END);
  handle = static_cast<FileHandleId>(reinterpret_cast<uintptr_t>(file));
  return ERROR_SUCCESS;
}

void Win32FileSystem::Close(FileHandleId handle) { CloseHandle(ToHandle(handle)); }

int32_t Win32FileSystem::GetSize(FileHandleId handle, uint64_t& size) {
  LARGE_INTEGER value;
  if (!GetFileSizeEx(ToHandle(handle), &value)) return LastError();
  size = static_cast<uint64_t>(value.QuadPart);
  return ERROR_SUCCESS;
}

int32_t Win32FileSystem::ReadAll(std::u16string_view path, std::string& bytes) {
  ScopedHandle file(CreateFileW(ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.valid()) return LastError();
  bytes.clear();
  char buffer[4096];
  DWORD got = 0;
  while (true) {
    if (!ReadFile(file.get(), buffer, sizeof(buffer), &got, nullptr)) return LastError();
    if (got == 0) return ERROR_SUCCESS;
    bytes.append(buffer, got);
  }
}

int32_t Win32FileSystem::Delete(std::u16string_view path) {
  return DeleteFileW(ToWide(path).c_str()) ? ERROR_SUCCESS : LastError();
}

int32_t Win32FileSystem::GetAttributes(std::u16string_view path, uint32_t& attributes) {
  DWORD value = GetFileAttributesW(ToWide(path).c_str());
  if (value == INVALID_FILE_ATTRIBUTES) return LastError();
  attributes = value;
  return ERROR_SUCCESS;
}

int32_t Win32FileSystem::SetAttributes(std::u16string_view path, uint32_t attributes) {
  return SetFileAttributesW(ToWide(path).c_str(), attributes) ? ERROR_SUCCESS : LastError();
}

int32_t Win32FileSystem::GetLastWriteTime(std::u16string_view path, uint64_t& fileTime) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(ToWide(path).c_str(), GetFileExInfoStandard, &data)) return LastError();
  fileTime = (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) | data.ftLastWriteTime.dwLowDateTime;
  return ERROR_SUCCESS;
}

int32_t Win32FileSystem::EnumerateDirectory(std::u16string_view directory, std::vector<std::u16string>& names) {
  std::wstring pattern = ToWide(directory) + L"\\*";
  WIN32_FIND_DATAW data;
  ScopedFindHandle find(FindFirstFileW(pattern.c_str(), &data));
  if (!find.valid()) return LastError();
  do {
    names.push_back(FromWide(data.cFileName));
  } while (FindNextFileW(find.get(), &data));
  // The walk ends at "no more files"; anything else cut the listing short.
  DWORD error = GetLastError();
  return error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : static_cast<int32_t>(error);
}

int32_t Win32FileSystem::CreateDirectory(std::u16string_view path) {
  return CreateDirectoryW(ToWide(path).c_str(), nullptr) ? ERROR_SUCCESS : LastError();
}

int32_t Win32FileSystem::RemoveDirectory(std::u16string_view path) {
  return RemoveDirectoryW(ToWide(path).c_str()) ? ERROR_SUCCESS : LastError();
}

int32_t Win32FileSystem::DeleteAtReboot(std::u16string_view path) {
  return MoveFileExW(ToWide(path).c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) ? ERROR_SUCCESS : LastError();
}

int32_t Win32FileSystem::GetFullPath(std::u16string_view path, std::u16string& full) {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetFullPathNameW(ToWide(path).c_str(), MAX_PATH, buffer, nullptr);
  if (n == 0) return LastError();
  if (n >= MAX_PATH) return ERROR_INSUFFICIENT_BUFFER;
  full = FromWide(buffer, n);
  return ERROR_SUCCESS;
}

int32_t Win32FileSystem::GetLongPath(std::u16string_view path, std::u16string& longPath) {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetLongPathNameW(ToWide(path).c_str(), buffer, MAX_PATH);
  if (n == 0) return LastError();
  if (n >= MAX_PATH) return ERROR_INSUFFICIENT_BUFFER;
  longPath = FromWide(buffer, n);
  return ERROR_SUCCESS;
}

int32_t Win32FileSystem::GetTempPath(std::u16string& path) {
  wchar_t buffer[MAX_PATH + 1];
  DWORD n = GetTempPathW(MAX_PATH + 1, buffer);
  if (n == 0) return LastError();
  if (n > MAX_PATH) return ERROR_INSUFFICIENT_BUFFER;
  path = FromWide(buffer, n);
  return ERROR_SUCCESS;
}

}  // namespace SASM
