#pragma once
// A file system in memory for native tests. Paths match without case and with
// either separator. Any path can be made to answer locked (32), denied (5),
// missing (2) or another error; open handles share reading only, as the real
// seam opens them, so a second writer sees 32 too.
#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IFileSystem.h"

namespace SASM {

class FakeFileSystem : public IFileSystem {
 public:
  // Each adds the missing parent directories too.
  void AddDirectory(std::u16string_view path);
  void AddFile(std::u16string_view path, std::string content = "", uint32_t attributes = FileAttribute::kArchive) {
    std::u16string key = Key(path);
    std::u16string parent = Parent(key);
    if (!parent.empty()) AddDirectory(path.substr(0, parent.size()));
    entries_[key] = Entry{std::u16string(path), attributes & ~FileAttribute::kDirectory, std::move(content)};
  }
  // Every operation that names this path answers the error (the path may exist or not).
  void FailPath(std::u16string_view path, int32_t error) { failures_[Key(path)] = error; }
  void Lock(std::u16string_view path) { FailPath(path, FileError::kSharingViolation); }
  void Deny(std::u16string_view path) { FailPath(path, FileError::kAccessDenied); }
  void SetTempPath(std::u16string path) { tempPath_ = std::move(path); }
  // Entries are written at time 0 unless told otherwise.
  void SetLastWriteTime(std::u16string_view path, uint64_t fileTime) {
    auto found = entries_.find(Key(path));
    if (found != entries_.end()) found->second.lastWrite = fileTime;
  }
  // The long form of a short path; other existing paths are their own long form.
  void AddLongName(std::u16string_view shortPath, std::u16string longPath) {
    longNames_[Key(shortPath)] = std::move(longPath);
  }

  bool Exists(std::u16string_view path) const { return entries_.count(Key(path)) != 0; }
  bool IsDirectory(std::u16string_view path) const {
    auto found = entries_.find(Key(path));
    return found != entries_.end() && (found->second.attributes & FileAttribute::kDirectory);
  }
  // Paths queued for deletion at the next restart, in order.
  const std::vector<std::u16string>& RebootDeletes() const { return rebootDeletes_; }
  size_t OpenHandles() const { return handles_.size(); }

  int32_t Open(std::u16string_view path, int32_t mode, FileHandleId& handle) override;
  void Close(FileHandleId handle) override { handles_.erase(handle); }
  int32_t GetSize(FileHandleId handle, uint64_t& size) override {
    auto found = handles_.find(handle);
    if (found == handles_.end()) return 6;  // invalid handle
    size = entries_[found->second.key].content.size();
    return FileError::kSuccess;
  }
  int32_t ReadAll(std::u16string_view path, std::string& bytes) override;
  int32_t Delete(std::u16string_view path) override;
  int32_t GetAttributes(std::u16string_view path, uint32_t& attributes) override {
    Entry* entry = nullptr;
    if (int32_t error = Lookup(path, entry)) return error;
    attributes = entry->attributes;
    return FileError::kSuccess;
  }
  int32_t SetAttributes(std::u16string_view path, uint32_t attributes) override {
    Entry* entry = nullptr;
    if (int32_t error = Lookup(path, entry)) return error;
    entry->attributes = (attributes & ~FileAttribute::kDirectory) | (entry->attributes & FileAttribute::kDirectory);
    return FileError::kSuccess;
  }
  int32_t GetLastWriteTime(std::u16string_view path, uint64_t& fileTime) override {
    Entry* entry = nullptr;
    if (int32_t error = Lookup(path, entry)) return error;
    fileTime = entry->lastWrite;
    return FileError::kSuccess;
  }
  int32_t EnumerateDirectory(std::u16string_view directory, std::vector<std::u16string>& names) override;
  int32_t CreateDirectory(std::u16string_view path) override;
  int32_t RemoveDirectory(std::u16string_view path) override;
  int32_t DeleteAtReboot(std::u16string_view path) override {
    std::u16string key = Key(path);
    if (int32_t failure = Failure(key)) return failure;
    rebootDeletes_.emplace_back(path);
    return FileError::kSuccess;
  }
  int32_t GetFullPath(std::u16string_view path, std::u16string& full) override;
  int32_t GetLongPath(std::u16string_view path, std::u16string& longPath) override;
  int32_t GetTempPath(std::u16string& path) override {
    path = tempPath_;
    return FileError::kSuccess;
  }

 private:
  struct Entry {
    std::u16string path;  // as added
    uint32_t attributes;
    std::string content;
    uint64_t lastWrite = 0;
  };
  struct Handle {
    std::u16string key;
    bool writes;
  };

  // Upper case, "/" as "\", no trailing separator.
  static std::u16string Key(std::u16string_view path);
  static std::u16string Parent(const std::u16string& key);
  int32_t Failure(const std::u16string& key) const {
    auto found = failures_.find(key);
    return found == failures_.end() ? FileError::kSuccess : found->second;
  }
  // The entry a path names, or the error an operation on it answers.
  int32_t Lookup(std::u16string_view path, Entry*& entry);
  // 2 for a missing file in an existing directory, 3 when the directory is missing too.
  int32_t MissingError(const std::u16string& key) const;
  bool HasChildren(const std::u16string& key) const {
    auto it = entries_.upper_bound(key + u"\\");
    return it != entries_.end() && it->first.starts_with(key + u"\\");
  }
  bool OpenForWriting(const std::u16string& key) const {
    return std::any_of(handles_.begin(), handles_.end(),
                       [&](const auto& handle) { return handle.second.key == key && handle.second.writes; });
  }
  bool IsOpen(const std::u16string& key) const {
    return std::any_of(handles_.begin(), handles_.end(), [&](const auto& handle) { return handle.second.key == key; });
  }

  std::map<std::u16string, Entry> entries_;
  std::map<std::u16string, int32_t> failures_;
  std::map<std::u16string, std::u16string> longNames_;
  std::map<FileHandleId, Handle> handles_;
  std::vector<std::u16string> rebootDeletes_;
  std::u16string tempPath_ = u"C:\\Users\\Tester\\AppData\\Local\\Temp\\";
  FileHandleId nextHandle_ = 0x100;
};

}  // namespace SASM
