#include "tests/fakes/FakeBrokerFilePlatform.h"

#include <algorithm>

namespace SASM {

namespace {

constexpr uint32_t kBackupSemantics = 0x02000000;
constexpr uint32_t kShareWrite = 2;
constexpr uint32_t kDirectoryNotEmpty = 145;

}  // namespace

std::u16string FakeBrokerFilePlatform::Key(std::u16string_view path) {
  std::u16string key;
  for (char16_t unit : path) {
    if (unit == u'/') unit = u'\\';
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - u'a' + u'A');
    key.push_back(unit);
  }
  while (key.size() > 3 && key.back() == u'\\') key.pop_back();
  return key;
}

std::u16string FakeBrokerFilePlatform::Parent(const std::u16string& key) {
  size_t slash = key.rfind(u'\\');
  if (slash == std::u16string::npos) return {};
  return slash == 2 ? key.substr(0, 3) : key.substr(0, slash);
}

void FakeBrokerFilePlatform::AddDirectory(std::u16string_view path) {
  std::u16string key = Key(path);
  while (!key.empty() && directories_.insert(key).second) {
    std::u16string parent = Parent(key);
    if (parent == key) break;
    key = parent;
  }
}

FakeBrokerFilePlatform::OpenFile* FakeBrokerFilePlatform::Find(Handle handle) {
  auto found = handles_.find(handle);
  return found == handles_.end() ? nullptr : &found->second;
}

bool FakeBrokerFilePlatform::SharingConflict(const std::u16string& key, uint32_t access, uint32_t shareMode) const {
  bool reads = (access & FileAccess::kGenericRead) != 0;
  bool writes = (access & FileAccess::kGenericWrite) != 0;
  // The other process writes and shares only reading.
  if (held_.count(key) && (writes || !(shareMode & kShareWrite))) return true;
  for (const auto& [handle, open] : handles_) {
    if (open.find || open.key != key) continue;
    bool otherReads = (open.access & FileAccess::kGenericRead) != 0;
    bool otherWrites = (open.access & FileAccess::kGenericWrite) != 0;
    if (reads && !(open.shareMode & FileShare::kRead)) return true;
    if (writes && !(open.shareMode & kShareWrite)) return true;
    if (otherReads && !(shareMode & FileShare::kRead)) return true;
    if (otherWrites && !(shareMode & kShareWrite)) return true;
  }
  return false;
}

uint32_t FakeBrokerFilePlatform::CreateFile(const char16_t* path, uint32_t access, uint32_t shareMode,
                                            uint32_t disposition, uint32_t flags, Handle& handle) {
  handle = kInvalidHandle;
  opens_.push_back({path ? std::u16string(path) : std::u16string(), access, shareMode, disposition, flags});
  if (!path) return kErrorPathNotFound;
  std::u16string key = Key(path);
  if (auto failing = failingOpens_.find(key); failing != failingOpens_.end()) return failing->second;
  if (directories_.count(key)) {
    if (!(flags & kBackupSemantics) || disposition != FileDisposition::kOpenExisting) return kErrorAccessDenied;
    OpenFile directory;
    directory.key = key;
    directory.access = access;
    directory.shareMode = shareMode;
    directory.directory = true;
    handle = NewHandle(std::move(directory));
    return 0;
  }
  if (SharingConflict(key, access, shareMode)) return kErrorSharingViolation;
  bool exists = files_.count(key) != 0;
  switch (disposition) {
    case FileDisposition::kCreateNew:
      if (exists) return kErrorFileExists;
      files_[key].clear();
      break;
    case FileDisposition::kCreateAlways:
      files_[key].clear();
      break;
    case FileDisposition::kOpenExisting:
      if (!exists) return kErrorFileNotFound;
      break;
    case FileDisposition::kOpenAlways:
      if (!exists) files_[key].clear();
      break;
    default:
      return 87;
  }
  OpenFile file;
  file.key = key;
  file.access = access;
  file.shareMode = shareMode;
  handle = NewHandle(std::move(file));
  return 0;
}

uint32_t FakeBrokerFilePlatform::ReadFile(Handle file, uint8_t* buffer, uint32_t length, uint32_t& read) {
  read = 0;
  OpenFile* open = Find(file);
  if (!open || open->find) return kErrorInvalidHandle;
  if (open->directory || !(open->access & FileAccess::kGenericRead)) return kErrorAccessDenied;
  const std::string& content = files_[open->key];
  if (open->position < content.size()) {
    read = std::min<uint32_t>(length, static_cast<uint32_t>(content.size() - open->position));
    std::copy_n(content.begin() + open->position, read, buffer);
  }
  open->position += read;
  return 0;
}

uint32_t FakeBrokerFilePlatform::WriteFile(Handle file, const uint8_t* data, uint32_t length, uint32_t& written) {
  written = 0;
  OpenFile* open = Find(file);
  if (!open || open->find) return kErrorInvalidHandle;
  if (open->directory || !(open->access & FileAccess::kGenericWrite)) return kErrorAccessDenied;
  if (writeError_ != 0) return writeError_;
  std::string& content = files_[open->key];
  if (content.size() < open->position + length) content.resize(open->position + length, '\0');
  std::copy_n(data, length, content.begin() + open->position);
  open->position += length;
  written = length;
  return 0;
}

uint32_t FakeBrokerFilePlatform::SetFilePointer(Handle file, int32_t distance, uint32_t moveMethod, uint32_t& error) {
  ++setPointerCalls_;
  error = 0;
  OpenFile* open = Find(file);
  if (!open || open->find) {
    error = kErrorInvalidHandle;
    return ~uint32_t{0};
  }
  int64_t base = 0;
  if (moveMethod == FileMoveMethod::kCurrent) base = open->position;
  if (moveMethod == FileMoveMethod::kEnd) base = static_cast<int64_t>(files_[open->key].size());
  int64_t position = base + distance;
  if (position < 0) {
    error = kErrorNegativeSeek;
    return ~uint32_t{0};
  }
  open->position = static_cast<uint32_t>(position);
  return open->position;
}

uint32_t FakeBrokerFilePlatform::DeleteFile(const char16_t* path) {
  if (!path) return kErrorPathNotFound;
  std::u16string key = Key(path);
  deletes_.push_back(key);
  if (directories_.count(key)) return kErrorAccessDenied;
  if (!files_.count(key)) return kErrorFileNotFound;
  if (HasOpenHandle(key) || held_.count(key)) return kErrorSharingViolation;
  files_.erase(key);
  return 0;
}

uint32_t FakeBrokerFilePlatform::RemoveDirectory(const char16_t* path) {
  if (!path) return kErrorPathNotFound;
  std::u16string key = Key(path);
  if (!directories_.count(key)) return kErrorFileNotFound;
  auto isChild = [&](const std::u16string& entry) { return Parent(entry) == key && entry != key; };
  if (std::any_of(files_.begin(), files_.end(), [&](const auto& file) { return isChild(file.first); }) ||
      std::any_of(directories_.begin(), directories_.end(), isChild)) {
    return kDirectoryNotEmpty;
  }
  directories_.erase(key);
  return 0;
}

uint32_t FakeBrokerFilePlatform::CreateDirectory(const char16_t* path) {
  if (!path) return kErrorPathNotFound;
  std::u16string key = Key(path);
  if (files_.count(key) || directories_.count(key)) return kErrorAlreadyExists;
  if (!directories_.count(Parent(key))) return kErrorPathNotFound;
  directories_.insert(key);
  return 0;
}

uint32_t FakeBrokerFilePlatform::MoveFileEx(const char16_t* from, const char16_t* to, uint32_t flags) {
  moveFlags_.push_back(flags);
  for (const auto& [handle, open] : handles_) {
    if (open.directory) pinnedDuringMoves_.push_back(open.key);
  }
  if (!from || !to) return kErrorPathNotFound;
  std::u16string source = Key(from);
  std::u16string target = Key(to);
  if (!files_.count(source)) return kErrorFileNotFound;
  if (files_.count(target) && !(flags & 1)) return kErrorAlreadyExists;
  if (HasOpenHandle(source)) return kErrorSharingViolation;
  std::string content = std::move(files_[source]);
  files_.erase(source);
  files_[target] = std::move(content);
  return 0;
}

uint32_t FakeBrokerFilePlatform::GetFileAttributes(const char16_t* path) {
  if (!path) return ~uint32_t{0};
  std::u16string key = Key(path);
  if (directories_.count(key)) return 0x10;
  if (files_.count(key)) return 0x20;
  return ~uint32_t{0};
}

uint32_t FakeBrokerFilePlatform::GetFileAttributesEx(const char16_t* path, FileAttributeData& data) {
  uint32_t attributes = GetFileAttributes(path);
  if (attributes == ~uint32_t{0}) return kErrorFileNotFound;
  data = FileAttributeData();
  data.attributes = attributes;
  if (attributes == 0x20) data.sizeLow = static_cast<uint32_t>(files_[Key(path)].size());
  // Fixed times, so that a test can see each half copied to its place.
  data.creationTimeLow = 0x11;
  data.creationTimeHigh = 0x12;
  data.lastAccessTimeLow = 0x21;
  data.lastAccessTimeHigh = 0x22;
  data.lastWriteTimeLow = 0x31;
  data.lastWriteTimeHigh = 0x32;
  return 0;
}

uint32_t FakeBrokerFilePlatform::FindFirstFile(const char16_t* pattern, Handle& handle, FileFindData& data) {
  handle = kInvalidHandle;
  if (!pattern) return kErrorPathNotFound;
  std::u16string key = Key(pattern);
  std::u16string directory = Parent(key);
  std::u16string leaf = key.substr(directory.size() + (directory.size() == 3 ? 0 : 1));
  std::u16string prefix = leaf.substr(0, leaf.find(u'*'));
  if (!directories_.count(directory)) return kErrorPathNotFound;
  OpenFile find;
  find.find = true;
  auto collect = [&](const std::u16string& entry, uint32_t attributes) {
    if (entry == directory || Parent(entry) != directory) return;
    std::u16string name = entry.substr(entry.rfind(u'\\') + 1);
    if (name.compare(0, prefix.size(), prefix) == 0) find.listing.emplace_back(name, attributes);
  };
  for (const std::u16string& entry : directories_) collect(entry, 0x10);
  for (const auto& [entry, content] : files_) collect(entry, 0x20);
  std::sort(find.listing.begin(), find.listing.end());
  if (find.listing.empty()) return kErrorFileNotFound;
  handle = NewHandle(std::move(find));
  return FindNextFile(handle, data);
}

uint32_t FakeBrokerFilePlatform::FindNextFile(Handle find, FileFindData& data) {
  OpenFile* open = Find(find);
  if (!open || !open->find) return kErrorInvalidHandle;
  if (open->next >= open->listing.size()) return kErrorNoMoreFiles;
  const auto& [name, attributes] = open->listing[open->next++];
  data.leafName = name;
  data.attributes = attributes;
  return 0;
}

void FakeBrokerFilePlatform::RemoveFileSpec(std::u16string& path) {
  size_t slash = path.rfind(u'\\');
  if (slash == std::u16string::npos) {
    path.clear();
  } else {
    path.resize(slash == 2 && path.size() > 1 && path[1] == u':' ? 3 : slash);
  }
}

int32_t FakeBrokerFilePlatform::FileOperation(uint32_t operation, const std::u16string& from, uint16_t flags) {
  fileOperations_.push_back(from);
  if (fileOperationResult_ != 0) return fileOperationResult_;
  std::u16string root = Key(std::u16string_view(from.c_str()));
  auto beneath = [&](const std::u16string& entry) {
    return entry == root ||
           (entry.size() > root.size() && entry.compare(0, root.size(), root) == 0 && entry[root.size()] == u'\\');
  };
  std::erase_if(files_, [&](const auto& file) { return beneath(file.first); });
  std::erase_if(directories_, beneath);
  return 0;
}

FakeBrokerFilePlatform::ByteArray FakeBrokerFilePlatform::MakeArray(std::string_view bytes, uint32_t dimensions,
                                                                    uint32_t elementSize, int32_t lowerBound) {
  auto array = std::make_unique<FakeArray>();
  array->shape = {dimensions, elementSize, lowerBound, static_cast<uint32_t>(bytes.size())};
  array->bytes.assign(bytes.begin(), bytes.end());
  arrays_.push_back(std::move(array));
  return arrays_.back().get();
}

int32_t FakeBrokerFilePlatform::AccessByteArray(ByteArray array, uint8_t*& data) {
  if (arrayAccessResult_ < 0) return arrayAccessResult_;
  auto* fake = static_cast<FakeArray*>(array);
  ++fake->locks;
  data = fake->bytes.data();
  return 0;
}

}  // namespace SASM
