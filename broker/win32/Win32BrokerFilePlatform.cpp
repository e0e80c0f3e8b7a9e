#include "broker/win32/Win32BrokerFilePlatform.h"

#include <oleauto.h>
#include <shellapi.h>
#include <shlwapi.h>
// shlwapi.h names its A/W pair with a macro; the seam has a member of that name.
#undef PathIsDirectory

#include <vector>

#include "engine/win32/LateBoundFunction.h"
#include "engine/win32/SafeByteArray.h"

namespace SASM {

namespace {

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

HANDLE AsHandle(BrokerFilePlatform::Handle handle) {
  return reinterpret_cast<HANDLE>(static_cast<uintptr_t>(handle));
}

BrokerFilePlatform::Handle FromHandle(HANDLE handle) {
  return static_cast<BrokerFilePlatform::Handle>(reinterpret_cast<uintptr_t>(handle));
}

uint32_t LastError() { return GetLastError(); }

void Fill(FileFindData& data, const WIN32_FIND_DATAW& found) {
  data.attributes = found.dwFileAttributes;
  data.leafName.assign(reinterpret_cast<const char16_t*>(found.cFileName));
}

}  // namespace

bool Win32BrokerFilePlatform::IsBound(Function function) {
  switch (function) {
    case Function::kCreateFile:
      return kernel32_.CreateFileW() != nullptr;
    case Function::kDeleteFile:
      return kernel32_.DeleteFileW() != nullptr;
    case Function::kRemoveDirectory:
      return kernel32_.RemoveDirectoryW() != nullptr;
    case Function::kCreateDirectory:
      return kernel32_.CreateDirectoryW() != nullptr;
    case Function::kMoveFileEx:
      return kernel32_.MoveFileExW() != nullptr;
    case Function::kGetFileAttributesEx:
      return kernel32_.GetFileAttributesExW() != nullptr;
    case Function::kFindFirstFile:
      return kernel32_.FindFirstFileW() != nullptr;
    case Function::kFindNextFile:
      return kernel32_.FindNextFileW() != nullptr;
  }
  return false;
}

uint32_t Win32BrokerFilePlatform::CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode,
                                             uint32_t disposition, uint32_t flags, Handle& handle) {
  auto createFile = kernel32_.CreateFileW();
  if (!createFile) {
    handle = kInvalidHandle;
    return ERROR_PROC_NOT_FOUND;
  }
  HANDLE file = createFile(Wide(path), access, shareMode, nullptr, disposition, flags, nullptr);
  handle = FromHandle(file);
  return file == nullptr || file == INVALID_HANDLE_VALUE ? LastError() : 0;
}

uint32_t Win32BrokerFilePlatform::ReadFile(Handle file, uint8_t* buffer, uint32_t length, uint32_t& read) {
  DWORD count = 0;
  BOOL ok = ::ReadFile(AsHandle(file), buffer, length, &count, nullptr);
  read = count;
  return ok ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::WriteFile(Handle file, const uint8_t* data, uint32_t length, uint32_t& written) {
  DWORD count = 0;
  BOOL ok = ::WriteFile(AsHandle(file), data, length, &count, nullptr);
  written = count;
  return ok ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::SetFilePointer(Handle file, int32_t distance, uint32_t moveMethod,
                                                 uint32_t& error) {
  SetLastError(0);
  DWORD position = ::SetFilePointer(AsHandle(file), distance, nullptr, moveMethod);
  // All ones is also a real position; only the last error tells them apart.
  error = position == INVALID_SET_FILE_POINTER ? GetLastError() : 0;
  return position;
}

bool Win32BrokerFilePlatform::CloseHandle(Handle handle) { return ::CloseHandle(AsHandle(handle)) != FALSE; }

uint32_t Win32BrokerFilePlatform::DeleteFile(const char16_t* path) {
  auto deleteFile = kernel32_.DeleteFileW();
  if (!deleteFile) return ERROR_PROC_NOT_FOUND;
  return deleteFile(Wide(path)) ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::RemoveDirectory(const char16_t* path) {
  auto removeDirectory = kernel32_.RemoveDirectoryW();
  if (!removeDirectory) return ERROR_PROC_NOT_FOUND;
  return removeDirectory(Wide(path)) ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::CreateDirectory(const char16_t* path) {
  auto createDirectory = kernel32_.CreateDirectoryW();
  if (!createDirectory) return ERROR_PROC_NOT_FOUND;
  return createDirectory(Wide(path), nullptr) ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::MoveFileEx(const char16_t* from, const char16_t* to, uint32_t flags) {
  auto moveFile = kernel32_.MoveFileExW();
  if (!moveFile) return ERROR_PROC_NOT_FOUND;
  return moveFile(Wide(from), Wide(to), flags) ? 0 : LastError();
}

uint32_t Win32BrokerFilePlatform::GetFileAttributes(const char16_t* path) {
  auto getAttributes = kernel32_.GetFileAttributesW();
  return getAttributes ? getAttributes(Wide(path)) : INVALID_FILE_ATTRIBUTES;
}

uint32_t Win32BrokerFilePlatform::GetFileAttributesEx(const char16_t* path, FileAttributeData& data) {
  auto getAttributes = kernel32_.GetFileAttributesExW();
  if (!getAttributes) return ERROR_PROC_NOT_FOUND;
  WIN32_FILE_ATTRIBUTE_DATA found = {};
  if (!getAttributes(Wide(path), GetFileExInfoStandard, &found)) return LastError();
  data.attributes = found.dwFileAttributes;
  data.creationTimeLow = found.ftCreationTime.dwLowDateTime;
  data.creationTimeHigh = found.ftCreationTime.dwHighDateTime;
  data.lastAccessTimeLow = found.ftLastAccessTime.dwLowDateTime;
  data.lastAccessTimeHigh = found.ftLastAccessTime.dwHighDateTime;
  data.lastWriteTimeLow = found.ftLastWriteTime.dwLowDateTime;
  data.lastWriteTimeHigh = found.ftLastWriteTime.dwHighDateTime;
  data.sizeHigh = found.nFileSizeHigh;
  data.sizeLow = found.nFileSizeLow;
  return 0;
}

uint32_t Win32BrokerFilePlatform::FindFirstFile(const char16_t* pattern, Handle& handle, FileFindData& data) {
  auto findFirst = kernel32_.FindFirstFileW();
  if (!findFirst) {
    handle = kInvalidHandle;
    return ERROR_PROC_NOT_FOUND;
  }
  WIN32_FIND_DATAW found = {};
  HANDLE find = findFirst(Wide(pattern), &found);
  handle = FromHandle(find);
  if (find == nullptr || find == INVALID_HANDLE_VALUE) return LastError();
  Fill(data, found);
  return 0;
}

uint32_t Win32BrokerFilePlatform::FindNextFile(Handle find, FileFindData& data) {
  auto findNext = kernel32_.FindNextFileW();
  if (!findNext) return ERROR_PROC_NOT_FOUND;
  WIN32_FIND_DATAW found = {};
  if (!findNext(AsHandle(find), &found)) return LastError();
  Fill(data, found);
  return 0;
}

uint32_t Win32BrokerFilePlatform::FindClose(Handle find) { return ::FindClose(AsHandle(find)) ? 0 : LastError(); }

bool Win32BrokerFilePlatform::PathIsDirectory(const char16_t* path) {
  return path && PathIsDirectoryW(Wide(path)) != FALSE;
}

void Win32BrokerFilePlatform::RemoveFileSpec(std::u16string& path) {
  using RemoveFileSpecFunction = HRESULT(WINAPI*)(wchar_t*, size_t);
  static LateBoundFunction removeFileSpec(L"kernelbase.dll", "PathCchRemoveFileSpec");
  std::vector<wchar_t> buffer(path.begin(), path.end());
  buffer.push_back(L'\0');
  if (auto remove = removeFileSpec.As<RemoveFileSpecFunction>()) {
    if (FAILED(remove(buffer.data(), buffer.size()))) return;
  } else {
    PathRemoveFileSpecW(buffer.data());
  }
  path.assign(reinterpret_cast<const char16_t*>(buffer.data()));
}

int32_t Win32BrokerFilePlatform::FileOperation(uint32_t operation, const std::u16string& from, uint16_t flags) {
  SHFILEOPSTRUCTW request = {};
  request.wFunc = operation;
  request.pFrom = Wide(from.c_str());
  request.fFlags = flags;
  return SHFileOperationW(&request);
}

BrokerFilePlatform::ByteArray Win32BrokerFilePlatform::CreateByteArray(uint32_t count) {
  return SafeArrayCreateVector(VT_UI1, 0, count);
}

bool Win32BrokerFilePlatform::DescribeByteArray(ByteArray array, ByteArrayShape& shape) {
  return SafeByteArray::Describe(array, shape);
}

int32_t Win32BrokerFilePlatform::AccessByteArray(ByteArray array, uint8_t*& data) { return SafeByteArray::Access(array, data); }

void Win32BrokerFilePlatform::UnaccessByteArray(ByteArray array) { SafeArrayUnaccessData(static_cast<SAFEARRAY*>(array)); }

void Win32BrokerFilePlatform::DestroyByteArray(ByteArray array) { SafeArrayDestroy(static_cast<SAFEARRAY*>(array)); }

}  // namespace SASM
