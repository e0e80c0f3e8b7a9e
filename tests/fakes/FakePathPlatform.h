#pragma once
// A file system in tables for the path policy: folders, a temp path,
// directories and files, 8.3 aliases, reparse points and object-manager links.
// Paths are matched without case, as the platform does.
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "broker/PathPlatform.h"

namespace SASM {

class FakePathPlatform : public PathPlatform {
 public:
  static constexpr uint32_t kTagSymbolicLink = 0xA000000C;
  static constexpr uint32_t kTagMountPoint = 0xA0000003;

  // Reparse data in the platform's published layout for the tag.
  static std::vector<uint8_t> ReparseData(uint32_t tag, std::u16string_view substituteName,
                                          std::u16string_view printName);

  void SetFolder(int32_t csidl, std::u16string path) { folders_[csidl] = std::move(path); }
  void SetUserString(std::u16string keyPath, std::u16string valueName, std::u16string value) {
    userStrings_[Upper(keyPath) + u"|" + Upper(valueName)] = std::move(value);
  }
  void SetTempPath(std::u16string path) { tempPath_ = std::move(path); }
  // Answers GetFullPathName for exactly this input instead of canonicalising it.
  void SetFullPath(std::u16string input, std::u16string full) { fullPaths_[std::move(input)] = std::move(full); }
  void SetUpperCaseBound(bool bound) { upperCaseBound_ = bound; }

  // Each adds the path's parent directories too (for UNC paths, from the share down).
  void AddDirectory(std::u16string_view path) { AddEntry(path, PathAttribute::kDirectory); }
  void AddFile(std::u16string_view path) { AddEntry(path, PathAttribute::kArchive); }
  // shortPath names an existing entry by its 8.3 alias in its last component.
  void AddShortName(std::u16string_view shortPath, std::u16string_view longPath) {
    shortNames_[Key(shortPath)] = std::u16string(longPath);
  }
  // Marks a directory as a reparse point holding this data.
  void AddReparsePoint(std::u16string_view directory, std::vector<uint8_t> data);
  void AddSymbolicLink(std::u16string_view directory, std::u16string_view target) {
    AddReparsePoint(directory, ReparseData(kTagSymbolicLink, u"\\??\\" + std::u16string(target), target));
  }
  void AddLinkObject(std::u16string_view objectName, std::u16string target) {
    linkObjects_[std::u16string(objectName)] = std::move(target);
  }
  void FailOpen(std::u16string_view path) { failingOpens_.insert(Key(path)); }

  int FullPathCalls() const { return fullPathCalls_; }
  size_t OpenHandles() const { return handles_.size(); }

  uint32_t GetFullPathName(const char16_t* path, uint32_t bufferLength, std::u16string& full) override {
    ++fullPathCalls_;
    if (!path || !*path) return 0;
    auto fixed = fullPaths_.find(path);
    return Answer(fixed != fullPaths_.end() ? fixed->second : Canonicalize(path), bufferLength, full);
  }
  uint32_t GetLongPathName(const char16_t* path, uint32_t bufferLength, std::u16string& longPath) override {
    if (!path || !*path) return 0;
    std::u16string result = Expand(path);
    if (attributes_.count(Key(result)) == 0) return 0;
    return Answer(result, bufferLength, longPath);
  }
  uint32_t GetTempPath(uint32_t bufferLength, std::u16string& path) override {
    return Answer(tempPath_, bufferLength, path);
  }
  bool CharUpperBuff(std::u16string& text) override {
    if (!upperCaseBound_) return false;
    text = Upper(text);
    return true;
  }
  uint32_t GetFileAttributes(const char16_t* path) override;
  bool GetFileAttributesEx(const char16_t* path, uint32_t& attributes) override {
    attributes = GetFileAttributes(path);
    return attributes != PathAttribute::kInvalid;
  }
  bool GetFolderPath(int32_t csidl, std::u16string& path) override {
    auto folder = folders_.find(csidl);
    if (folder == folders_.end()) return false;
    path = folder->second;
    return true;
  }
  bool ReadUserString(const char16_t* keyPath, const char16_t* valueName, uint32_t maxBytes,
                      std::u16string& value) override {
    auto entry = userStrings_.find(Upper(keyPath) + u"|" + Upper(valueName));
    if (entry == userStrings_.end() || (entry->second.size() + 1) * 2 > maxBytes) return false;
    value = entry->second;
    return true;
  }
  bool OpenSymbolicLinkObject(const char16_t* objectName, uint32_t access, uint32_t attributes, Handle& link) override;
  bool QuerySymbolicLinkObject(Handle link, uint16_t maximumBytes, std::u16string& target) override;
  bool CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode, uint32_t disposition, uint32_t flags,
                  Handle& file) override {
    std::u16string key = Key(Expand(path));
    if (failingOpens_.count(key) != 0 || attributes_.count(key) == 0) return false;
    file = NewHandle({key, flags, false});
    return true;
  }
  bool DeviceIoControl(Handle device, uint32_t controlCode, std::vector<uint8_t>& output,
                       uint32_t& bytesReturned) override;
  void CloseHandle(Handle handle) override { handles_.erase(reinterpret_cast<uintptr_t>(handle)); }

 private:
  struct OpenHandle {
    std::u16string key;
    uint32_t flags;
    bool linkObject;
  };

  static std::u16string Upper(std::u16string_view text);
  // Upper case, one trailing separator cut except from a drive root.
  static std::u16string Key(std::u16string_view path);
  std::u16string Canonicalize(std::u16string_view path) const;
  // The path with every registered 8.3 alias replaced by its long form.
  std::u16string Expand(std::u16string_view path) const;
  void AddEntry(std::u16string_view path, uint32_t attributes);
  Handle NewHandle(OpenHandle handle) {
    uintptr_t id = nextHandle_++;
    handles_[id] = std::move(handle);
    return reinterpret_cast<Handle>(id);
  }
  static uint32_t Answer(const std::u16string& text, uint32_t bufferLength, std::u16string& out);

  std::map<int32_t, std::u16string> folders_;
  std::map<std::u16string, std::u16string> userStrings_;
  std::u16string tempPath_;
  // Relative and rooted paths are completed from here.
  const std::u16string currentDirectory_ = u"C:\\Work";
  std::map<std::u16string, std::u16string> fullPaths_;
  bool upperCaseBound_ = true;
  std::map<std::u16string, uint32_t> attributes_;
  std::map<std::u16string, std::u16string> shortNames_;
  std::map<std::u16string, std::vector<uint8_t>> reparseData_;
  std::map<std::u16string, std::u16string> linkObjects_;
  std::set<std::u16string> failingOpens_;
  std::map<uintptr_t, OpenHandle> handles_;
  uintptr_t nextHandle_ = 0x100;
  int fullPathCalls_ = 0;
};

}  // namespace SASM
