#include "tests/fakes/FakeProductFiles.h"

#include <algorithm>
#include <cstring>

namespace SASM {

bool FakeProductFiles::LoadFileToBuffer(std::u16string_view path, ByteBuffer& buffer) {
  auto it = files.find(std::u16string(path));
  if (it == files.end() || !buffer.Allocate(it->second.size())) return false;
  if (!it->second.empty()) std::memcpy(buffer.data(), it->second.data(), it->second.size());
  return true;
}

int32_t FakeProductFiles::CreateForWrite(std::u16string_view path, FileHandleId& handle) {
  const std::u16string key(path);
  const size_t slash = key.rfind(u'\\');
  if (refuseCreate.count(key)) return 5;
  if (slash != std::u16string::npos && !directories.count(key.substr(0, slash))) return 3;
  files[key].clear();
  created.push_back(key);
  handle = next_++;
  open_[handle] = Open{key, 0};
  return 0;
}

int32_t FakeProductFiles::WriteAtEnd(FileHandleId handle, const uint8_t* data, uint32_t size, uint32_t& written) {
  auto it = open_.find(handle);
  if (it == open_.end()) return 6;
  written = std::min(size, writeLimit);
  files[it->second.path].append(reinterpret_cast<const char*>(data), written);
  return 0;
}

int32_t FakeProductFiles::OpenForReading(std::u16string_view path, FileHandleId& handle) {
  const std::u16string key(path);
  if (!files.count(key)) return 2;
  handle = next_++;
  open_[handle] = Open{key, 0};
  return 0;
}

int32_t FakeProductFiles::Read(FileHandleId handle, uint8_t* data, uint32_t size, uint32_t& read) {
  auto it = open_.find(handle);
  if (it == open_.end()) return 6;
  const std::string& content = files[it->second.path];
  read = static_cast<uint32_t>(std::min<size_t>(size, content.size() - it->second.position));
  std::memcpy(data, content.data() + it->second.position, read);
  it->second.position += read;
  largestRead_ = std::max<size_t>(largestRead_, read);
  return 0;
}

int32_t FakeProductFiles::CreateDirectory(std::u16string_view path) {
  const std::u16string key(path);
  const size_t slash = key.rfind(u'\\');
  if (slash != std::u16string::npos && !directories.count(key.substr(0, slash))) return 3;
  return directories.insert(key).second ? 0 : 183;
}

}  // namespace SASM
