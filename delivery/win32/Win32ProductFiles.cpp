#include "delivery/win32/Win32ProductFiles.h"

#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "engine/win32/WindowsApi.h"

namespace SASM {
namespace {

HANDLE AsHandle(FileHandleId handle) { return reinterpret_cast<HANDLE>(static_cast<uintptr_t>(handle)); }
FileHandleId AsId(HANDLE handle) { return static_cast<FileHandleId>(reinterpret_cast<uintptr_t>(handle)); }

int32_t LastError() {
  const DWORD error = GetLastError();
  return error ? static_cast<int32_t>(error) : static_cast<int32_t>(ERROR_GEN_FAILURE);
}

}  // namespace

bool Win32ProductFiles::LoadFileToBuffer(std::u16string_view path, ByteBuffer& buffer) {
  buffer.reset();
  ScopedHandle file(CreateFileW(ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  DWORD high = 0;
  const DWORD low = GetFileSize(file.get(), &high);
  // Signed messages and certificates are read whole; a file past 4 GiB is none of them.
  if ((low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) || high != 0) return false;
  if (!buffer.Allocate(low)) return false;
  DWORD total = 0;
  while (total < low) {
    DWORD read = 0;
    if (!ReadFile(file.get(), buffer.data() + total, low - total, &read, nullptr) || read == 0) {
      buffer.reset();
      return false;
    }
    total += read;
  }
  return true;
}

int32_t Win32ProductFiles::CreateForWrite(std::u16string_view path, FileHandleId& handle) {
  HANDLE file = CreateFileW(ToWide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            FILE_FLAG_RANDOM_ACCESS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return LastError();
  handle = AsId(file);
  return 0;
}

int32_t Win32ProductFiles::WriteAtEnd(FileHandleId handle, const uint8_t* data, uint32_t size, uint32_t& written) {
  written = 0;
  if (SetFilePointer(AsHandle(handle), 0, nullptr, FILE_END) == INVALID_SET_FILE_POINTER &&
      GetLastError() != NO_ERROR)
    return LastError();
  DWORD count = 0;
  const BOOL ok = WriteFile(AsHandle(handle), data, size, &count, nullptr);
  written = count;
  return ok ? 0 : LastError();
}

int32_t Win32ProductFiles::OpenForReading(std::u16string_view path, FileHandleId& handle) {
  HANDLE file = CreateFileW(ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return LastError();
  handle = AsId(file);
  return 0;
}

int32_t Win32ProductFiles::Read(FileHandleId handle, uint8_t* data, uint32_t size, uint32_t& read) {
  DWORD count = 0;
  const BOOL ok = ReadFile(AsHandle(handle), data, size, &count, nullptr);
  read = count;
  return ok ? 0 : LastError();
}

void Win32ProductFiles::Close(FileHandleId handle) { CloseHandle(AsHandle(handle)); }

int32_t Win32ProductFiles::Delete(std::u16string_view path) {
  return DeleteFileW(ToWide(path).c_str()) ? 0 : LastError();
}

bool Win32ProductFiles::DirectoryExists(std::u16string_view path) {
  const DWORD attributes = GetFileAttributesW(ToWide(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

int32_t Win32ProductFiles::CreateDirectory(std::u16string_view path) {
  return CreateDirectoryW(ToWide(path).c_str(), nullptr) ? 0 : LastError();
}

}  // namespace SASM
