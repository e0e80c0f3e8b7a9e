#include "tests/fakes/FakeFileSystem.h"

#include <algorithm>

namespace SASM {
namespace {

constexpr int32_t kSuccess = FileError::kSuccess;

bool IsSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }

}  // namespace

std::u16string FakeFileSystem::Key(std::u16string_view path) {
  std::u16string key(path);
  for (char16_t& unit : key) {
    if (unit == u'/') unit = u'\\';
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 0x20);
  }
  while (key.size() > 1 && key.back() == u'\\') key.pop_back();
  return key;
}

std::u16string FakeFileSystem::Parent(const std::u16string& key) {
  size_t at = key.find_last_of(u'\\');
  return at == std::u16string::npos ? std::u16string() : key.substr(0, at);
}

void FakeFileSystem::AddDirectory(std::u16string_view path) {
  std::u16string key = Key(path);
  if (key.empty() || entries_.count(key)) return;
  std::u16string parent = Parent(key);
  if (!parent.empty()) AddDirectory(path.substr(0, parent.size()));
  std::u16string trimmed(path.substr(0, key.size()));
  entries_[key] = Entry{trimmed, FileAttribute::kDirectory, {}};
}

int32_t FakeFileSystem::MissingError(const std::u16string& key) const {
  std::u16string parent = Parent(key);
  auto found = entries_.find(parent);
  bool parentIsDirectory = parent.empty() || parent.size() == 2 ||
                           (found != entries_.end() && (found->second.attributes & FileAttribute::kDirectory));
  return parentIsDirectory ? FileError::kFileNotFound : FileError::kPathNotFound;
}

int32_t FakeFileSystem::Lookup(std::u16string_view path, Entry*& entry) {
  std::u16string key = Key(path);
  if (int32_t failure = Failure(key)) return failure;
  auto found = entries_.find(key);
  if (found == entries_.end()) return MissingError(key);
  entry = &found->second;
  return kSuccess;
}

int32_t FakeFileSystem::Open(std::u16string_view path, int32_t mode, FileHandleId& handle) {
  Entry* entry = nullptr;
  if (int32_t error = Lookup(path, entry)) return error;
  if (entry->attributes & FileAttribute::kDirectory) return FileError::kAccessDenied;
  bool writes = mode != static_cast<int32_t>(FileOpenMode::Read);
  if (writes && (entry->attributes & FileAttribute::kReadOnly)) return FileError::kAccessDenied;
  std::u16string key = Key(path);
  // Every handle shares reading only: a writer excludes all others, and any handle excludes a writer.
  if (OpenForWriting(key) || (writes && IsOpen(key))) return FileError::kSharingViolation;
  handle = nextHandle_++;
  handles_[handle] = Handle{key, writes};
  return kSuccess;
}

int32_t FakeFileSystem::ReadAll(std::u16string_view path, std::string& bytes) {
  Entry* entry = nullptr;
  if (int32_t error = Lookup(path, entry)) return error;
  if (entry->attributes & FileAttribute::kDirectory) return FileError::kAccessDenied;
  bytes = entry->content;
  return kSuccess;
}

int32_t FakeFileSystem::Delete(std::u16string_view path) {
  Entry* entry = nullptr;
  if (int32_t error = Lookup(path, entry)) return error;
  if (entry->attributes & (FileAttribute::kDirectory | FileAttribute::kReadOnly)) return FileError::kAccessDenied;
  if (IsOpen(Key(path))) return FileError::kSharingViolation;
  entries_.erase(Key(path));
  return kSuccess;
}

int32_t FakeFileSystem::EnumerateDirectory(std::u16string_view directory, std::vector<std::u16string>& names) {
  std::u16string key = Key(directory);
  if (int32_t failure = Failure(key)) return failure;
  auto found = entries_.find(key);
  if (found == entries_.end() || !(found->second.attributes & FileAttribute::kDirectory))
    return FileError::kPathNotFound;
  names.push_back(u".");
  names.push_back(u"..");
  std::u16string below = key + u"\\";
  for (auto it = entries_.upper_bound(below); it != entries_.end() && it->first.starts_with(below); ++it) {
    if (it->first.find(u'\\', below.size()) != std::u16string::npos) continue;
    const std::u16string& added = it->second.path;
    size_t at = added.find_last_of(u"\\/");
    names.push_back(at == std::u16string::npos ? added : added.substr(at + 1));
  }
  return kSuccess;
}

int32_t FakeFileSystem::CreateDirectory(std::u16string_view path) {
  std::u16string key = Key(path);
  if (int32_t failure = Failure(key)) return failure;
  if (entries_.count(key)) return FileError::kAlreadyExists;
  std::u16string parent = Parent(key);
  if (!parent.empty() && parent.size() != 2 && !IsDirectory(parent)) return FileError::kPathNotFound;
  entries_[key] = Entry{std::u16string(path.substr(0, key.size())), FileAttribute::kDirectory, {}};
  return kSuccess;
}

int32_t FakeFileSystem::RemoveDirectory(std::u16string_view path) {
  Entry* entry = nullptr;
  if (int32_t error = Lookup(path, entry)) return error;
  if (!(entry->attributes & FileAttribute::kDirectory)) return 267;  // the name is not a directory
  if (HasChildren(Key(path))) return FileError::kDirectoryNotEmpty;
  entries_.erase(Key(path));
  return kSuccess;
}

int32_t FakeFileSystem::GetFullPath(std::u16string_view path, std::u16string& full) {
  // Relative names complete from the root of C:; no other canonical form is made.
  full = std::u16string(path);
  std::replace(full.begin(), full.end(), u'/', u'\\');
  if (!(full.size() >= 2 && full[1] == u':')) full = (full.starts_with(u"\\") ? u"C:" : u"C:\\") + full;
  return full.size() < 260 ? kSuccess : FileError::kInsufficientBuffer;
}

int32_t FakeFileSystem::GetLongPath(std::u16string_view path, std::u16string& longPath) {
  std::u16string key = Key(path);
  if (int32_t failure = Failure(key)) return failure;
  if (auto alias = longNames_.find(key); alias != longNames_.end()) {
    longPath = alias->second;
    if (!path.empty() && IsSeparator(path.back()) && !longPath.ends_with(u"\\")) longPath += u"\\";
    return kSuccess;
  }
  if (!entries_.count(key)) return MissingError(key);
  longPath = std::u16string(path);
  return kSuccess;
}

}  // namespace SASM
