#pragma once
// Files, directories, handles and byte arrays in memory for the broker's file
// family. Paths match without case. Handles keep a position, their access and
// their sharing, so a write through a read handle fails with 5, a second open
// against a writer that doesn't share fails with 32, and a file can't be
// deleted while a handle is open on it (32), as on the platform.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "broker/BrokerFilePlatform.h"

namespace SASM {

class FakeBrokerFilePlatform : public BrokerFilePlatform {
 public:
  static constexpr uint32_t kErrorFileNotFound = 2;
  static constexpr uint32_t kErrorPathNotFound = 3;
  static constexpr uint32_t kErrorAccessDenied = 5;
  static constexpr uint32_t kErrorInvalidHandle = 6;
  static constexpr uint32_t kErrorNoMoreFiles = 18;
  static constexpr uint32_t kErrorSharingViolation = 32;
  static constexpr uint32_t kErrorFileExists = 80;
  static constexpr uint32_t kErrorNegativeSeek = 131;
  static constexpr uint32_t kErrorAlreadyExists = 183;

  struct OpenCall {
    std::u16string path;
    uint32_t access;
    uint32_t shareMode;
    uint32_t disposition;
    uint32_t flags;
    bool operator==(const OpenCall&) const = default;
  };

  void AddFile(std::u16string_view path, std::string content = "") {
    std::u16string key = Key(path);
    AddDirectory(Parent(key));
    files_[key] = std::move(content);
  }
  void AddDirectory(std::u16string_view path);
  bool Exists(std::u16string_view path) const {
    std::u16string key = Key(path);
    return files_.count(key) != 0 || directories_.count(key) != 0;
  }
  std::string Content(std::u16string_view path) const {
    auto found = files_.find(Key(path));
    return found == files_.end() ? std::string() : found->second;
  }
  // Another process holds the file open for writing and shares only reading.
  void HoldForWriting(std::u16string_view path) { held_.insert(Key(path)); }
  void FailOpen(std::u16string_view path, uint32_t error) { failingOpens_[Key(path)] = error; }
  void Unbind(Function function) { unbound_.insert(function); }
  void FailWrites(uint32_t error) { writeError_ = error; }
  void FailArrayAccess(int32_t result) { arrayAccessResult_ = result; }
  // Arrays longer than this can't be made.
  void LimitArrays(uint32_t count) { arrayLimit_ = count; }
  void SetFileOperationResult(int32_t result) { fileOperationResult_ = result; }

  const std::vector<OpenCall>& Opens() const { return opens_; }
  size_t OpenHandles() const { return handles_.size(); }
  bool IsOpen(Handle handle) const { return handles_.count(handle) != 0; }
  const std::vector<std::u16string>& FileOperations() const { return fileOperations_; }
  const std::vector<std::u16string>& Deletes() const { return deletes_; }
  const std::vector<uint32_t>& MoveFlags() const { return moveFlags_; }
  // The directory held open while each move ran, as its key.
  const std::vector<std::u16string>& PinnedDuringMoves() const { return pinnedDuringMoves_; }
  int SetPointerCalls() const { return setPointerCalls_; }

  // A byte array as a client would send it.
  ByteArray MakeArray(std::string_view bytes, uint32_t dimensions = 1, uint32_t elementSize = 1,
                      int32_t lowerBound = 0);
  std::string ArrayBytes(ByteArray array) const {
    const auto* fake = static_cast<const FakeArray*>(array);
    return fake ? std::string(fake->bytes.begin(), fake->bytes.end()) : std::string();
  }
  // Accesses not yet released.
  int Locks(ByteArray array) const { return static_cast<const FakeArray*>(array)->locks; }
  size_t LiveArrays() const {
    return std::count_if(arrays_.begin(), arrays_.end(), [](const auto& array) { return !array->destroyed; });
  }

  bool IsBound(Function function) override { return unbound_.count(function) == 0; }
  uint32_t CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition, uint32_t flags,
                      Handle& handle) override;
  uint32_t ReadFile(Handle file, uint8_t* buffer, uint32_t length, uint32_t& read) override;
  uint32_t WriteFile(Handle file, const uint8_t* data, uint32_t length, uint32_t& written) override;
  uint32_t SetFilePointer(Handle file, int32_t distance, uint32_t moveMethod, uint32_t& error) override;
  bool CloseHandle(Handle handle) override {
    return handles_.erase(handle) != 0;
  }
  uint32_t DeleteFile(const char16_t* path) override;
  uint32_t RemoveDirectory(const char16_t* path) override;
  uint32_t CreateDirectory(const char16_t* path) override;
  uint32_t MoveFileEx(const char16_t* from, const char16_t* to, uint32_t flags) override;
  uint32_t GetFileAttributes(const char16_t* path) override;
  uint32_t GetFileAttributesEx(const char16_t* path, FileAttributeData& data) override;
  uint32_t FindFirstFile(const char16_t* pattern, Handle& handle, FileFindData& data) override;
  uint32_t FindNextFile(Handle find, FileFindData& data) override;
  uint32_t FindClose(Handle find) override {
    OpenFile* open = Find(find);
    if (!open || !open->find) return kErrorInvalidHandle;
    handles_.erase(find);
    return 0;
  }
  bool PathIsDirectory(const char16_t* path) override { return path && directories_.count(Key(path)) != 0; }
  void RemoveFileSpec(std::u16string& path) override;
  int32_t FileOperation(uint32_t operation, const std::u16string& from, uint16_t flags) override;

  ByteArray CreateByteArray(uint32_t count) override {
    if (count > arrayLimit_) return nullptr;
    return MakeArray(std::string(count, '\0'));
  }
  bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) override {
    if (!array) return false;
    shape = static_cast<FakeArray*>(array)->shape;
    return true;
  }
  int32_t AccessByteArray(ByteArray array, uint8_t*& data) override;
  void UnaccessByteArray(ByteArray array) override { --static_cast<FakeArray*>(array)->locks; }
  void DestroyByteArray(ByteArray array) override { static_cast<FakeArray*>(array)->destroyed = true; }

 private:
  struct OpenFile {
    std::u16string key;
    uint32_t access = 0;
    uint32_t shareMode = 0;
    uint32_t position = 0;
    bool directory = false;
    bool find = false;
    std::vector<std::pair<std::u16string, uint32_t>> listing;
    size_t next = 0;
  };
  struct FakeArray {
    ByteArrayShape shape;
    std::vector<uint8_t> bytes;
    int locks = 0;
    bool destroyed = false;
  };

  static std::u16string Key(std::u16string_view path);
  static std::u16string Parent(const std::u16string& key);
  Handle NewHandle(OpenFile file) {
    Handle handle = nextHandle_;
    nextHandle_ += 4;
    handles_[handle] = std::move(file);
    return handle;
  }
  OpenFile* Find(Handle handle);
  bool SharingConflict(const std::u16string& key, uint32_t access, uint32_t shareMode) const;
  bool HasOpenHandle(const std::u16string& key) const {
    return std::any_of(handles_.begin(), handles_.end(),
                       [&](const auto& entry) { return !entry.second.find && entry.second.key == key; });
  }

  std::map<std::u16string, std::string> files_;
  std::set<std::u16string> directories_;
  std::set<std::u16string> held_;
  std::map<std::u16string, uint32_t> failingOpens_;
  std::set<Function> unbound_;
  uint32_t writeError_ = 0;
  int32_t arrayAccessResult_ = 0;
  uint32_t arrayLimit_ = 1u << 24;
  int32_t fileOperationResult_ = 0;

  std::map<Handle, OpenFile> handles_;
  Handle nextHandle_ = 0x100;
  std::vector<OpenCall> opens_;
  std::vector<std::u16string> fileOperations_;
  std::vector<std::u16string> deletes_;
  std::vector<uint32_t> moveFlags_;
  std::vector<std::u16string> pinnedDuringMoves_;
  int setPointerCalls_ = 0;
  std::vector<std::unique_ptr<FakeArray>> arrays_;
};

}  // namespace SASM
