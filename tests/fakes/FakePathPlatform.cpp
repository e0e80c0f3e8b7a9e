#include "tests/fakes/FakePathPlatform.h"

#include <algorithm>
#include <array>

namespace SASM {
namespace {

constexpr uint32_t kGetReparsePoint = 0x900A8;
constexpr uint32_t kFlagOpenReparsePoint = 0x200000;
constexpr uint32_t kObjCaseInsensitive = 64;

constexpr std::array<std::u16string_view, 22> kDeviceNames = {
    u"CON",  u"PRN",  u"AUX",  u"NUL",  u"COM1", u"COM2", u"COM3", u"COM4", u"COM5", u"COM6", u"COM7",
    u"COM8", u"COM9", u"LPT1", u"LPT2", u"LPT3", u"LPT4", u"LPT5", u"LPT6", u"LPT7", u"LPT8", u"LPT9"};

void Put(std::vector<uint8_t>& data, uint32_t value, size_t size) {
  for (size_t i = 0; i < size; ++i) data.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

void PutText(std::vector<uint8_t>& data, std::u16string_view text) {
  for (char16_t unit : text) Put(data, unit, 2);
}

}  // namespace

std::vector<uint8_t> FakePathPlatform::ReparseData(uint32_t tag, std::u16string_view substituteName,
                                                   std::u16string_view printName) {
  bool symbolicLink = tag == kTagSymbolicLink;
  uint32_t substituteBytes = static_cast<uint32_t>(substituteName.size() * 2);
  uint32_t printBytes = static_cast<uint32_t>(printName.size() * 2);
  std::vector<uint8_t> data;
  Put(data, tag, 4);
  Put(data, (symbolicLink ? 12 : 8) + substituteBytes + printBytes, 2);
  Put(data, 0, 2);
  Put(data, 0, 2);  // substitute name offset
  Put(data, substituteBytes, 2);
  Put(data, substituteBytes, 2);  // print name offset
  Put(data, printBytes, 2);
  if (symbolicLink) Put(data, 0, 4);  // flags: absolute
  PutText(data, substituteName);
  PutText(data, printName);
  return data;
}

std::u16string FakePathPlatform::Upper(std::u16string_view text) {
  std::u16string result(text);
  for (char16_t& unit : result) {
    if ((unit >= u'a' && unit <= u'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7)) unit -= 0x20;
  }
  return result;
}

std::u16string FakePathPlatform::Key(std::u16string_view path) {
  std::u16string key = Upper(path);
  bool driveRoot = key.size() == 3 && key[1] == u':';
  if (key.size() > 1 && key.back() == u'\\' && !driveRoot) key.pop_back();
  return key;
}

void FakePathPlatform::AddEntry(std::u16string_view path, uint32_t attributes) {
  std::u16string key = Key(path);
  attributes_[key] = attributes;
  size_t first = 1;
  if (key.starts_with(u"\\\\")) {
    // A server name has no attributes; a share has.
    size_t server = key.find(u'\\', 2);
    size_t share = server == key.npos ? key.npos : key.find(u'\\', server + 1);
    if (share == key.npos) return;
    attributes_.try_emplace(key.substr(0, share), PathAttribute::kDirectory);
    first = share + 1;
  } else if (key.size() >= 3 && key[1] == u':') {
    attributes_.try_emplace(key.substr(0, 3), PathAttribute::kDirectory);
    first = 3;
  }
  for (size_t slash = key.find(u'\\', first); slash != key.npos; slash = key.find(u'\\', slash + 1)) {
    attributes_.try_emplace(key.substr(0, slash), PathAttribute::kDirectory);
  }
}

void FakePathPlatform::AddReparsePoint(std::u16string_view directory, std::vector<uint8_t> data) {
  AddEntry(directory, PathAttribute::kDirectory | PathAttribute::kReparsePoint);
  reparseData_[Key(directory)] = std::move(data);
}

uint32_t FakePathPlatform::Answer(const std::u16string& text, uint32_t bufferLength, std::u16string& out) {
  if (text.empty()) return 0;
  if (text.size() + 1 > bufferLength) return static_cast<uint32_t>(text.size() + 1);
  out = text;
  return static_cast<uint32_t>(text.size());
}

std::u16string FakePathPlatform::Canonicalize(std::u16string_view input) const {
  // Long paths are handed on untouched, where the platform would canonicalise them too:
  // that lets a test hand the policy's own rules dots and separators the platform removes.
  if (input.starts_with(u"\\\\?\\")) return std::u16string(input);
  std::u16string path(input);
  std::replace(path.begin(), path.end(), u'/', u'\\');

  std::u16string root;
  std::u16string rest;
  std::u16string currentRoot = currentDirectory_.substr(0, 3);
  std::u16string currentTail = currentDirectory_.substr(3);
  if (path.starts_with(u"\\\\.\\")) {
    root = u"\\\\.\\";
    rest = path.substr(4);
  } else if (path.starts_with(u"\\\\")) {
    size_t server = path.find(u'\\', 2);
    size_t share = server == path.npos ? path.npos : path.find(u'\\', server + 1);
    if (share == path.npos) return path;
    root = path.substr(0, share + 1);
    rest = path.substr(share + 1);
  } else if (path.size() >= 2 && path[1] == u':') {
    if (path.size() >= 3 && path[2] == u'\\') {
      root = path.substr(0, 3);
      rest = path.substr(3);
    } else if (Upper(path.substr(0, 1)) == Upper(currentRoot.substr(0, 1))) {
      root = currentRoot;
      rest = currentTail + u"\\" + path.substr(2);
    } else {
      root = path.substr(0, 2) + u"\\";
      rest = path.substr(2);
    }
  } else if (path.starts_with(u"\\")) {
    root = currentRoot;
    rest = path.substr(1);
  } else {
    root = currentRoot;
    rest = currentTail + u"\\" + path;
  }

  bool trailingSeparator = !rest.empty() && rest.back() == u'\\';
  std::vector<std::u16string> segments;
  size_t start = 0;
  for (size_t i = 0; i <= rest.size(); ++i) {
    if (i < rest.size() && rest[i] != u'\\') continue;
    std::u16string segment = rest.substr(start, i - start);
    start = i + 1;
    if (segment.empty() || segment == u".") continue;
    if (segment == u"..") {
      if (!segments.empty()) segments.pop_back();
      continue;
    }
    segments.push_back(segment);
  }
  // Trailing dots and spaces of the last name go, and a device name wins over any folder.
  if (!trailingSeparator && !segments.empty()) {
    std::u16string& last = segments.back();
    while (!last.empty() && (last.back() == u'.' || last.back() == u' ')) last.pop_back();
    std::u16string base = last.substr(0, last.find(u'.'));
    while (!base.empty() && base.back() == u' ') base.pop_back();
    if (last.empty()) {
      segments.pop_back();
    } else if (root != u"\\\\.\\" &&
               std::find(kDeviceNames.begin(), kDeviceNames.end(), Upper(base)) != kDeviceNames.end()) {
      return u"\\\\.\\" + base;
    }
  }
  std::u16string result = root;
  for (size_t i = 0; i < segments.size(); ++i) {
    if (i > 0) result += u'\\';
    result += segments[i];
  }
  if (trailingSeparator && !segments.empty()) result += u'\\';
  return result;
}

std::u16string FakePathPlatform::Expand(std::u16string_view input) const {
  std::u16string result;
  size_t start = 0;
  for (size_t i = 0; i <= input.size(); ++i) {
    if (i < input.size() && input[i] != u'\\') continue;
    result += input.substr(start, i - start);
    auto alias = shortNames_.find(Key(result));
    if (alias != shortNames_.end()) result = alias->second;
    if (i < input.size()) result += u'\\';
    start = i + 1;
  }
  return result;
}

uint32_t FakePathPlatform::GetFileAttributes(const char16_t* path) {
  auto entry = attributes_.find(Key(Expand(path)));
  return entry == attributes_.end() ? PathAttribute::kInvalid : entry->second;
}

bool FakePathPlatform::OpenSymbolicLinkObject(const char16_t* objectName, uint32_t access, uint32_t attributes,
                                              Handle& link) {
  std::u16string name(objectName);
  bool caseless = (attributes & kObjCaseInsensitive) != 0;
  for (const auto& [known, target] : linkObjects_) {
    if (known == name || (caseless && Upper(known) == Upper(name))) {
      link = NewHandle({known, 0, true});
      return true;
    }
  }
  return false;
}

bool FakePathPlatform::QuerySymbolicLinkObject(Handle link, uint16_t maximumBytes, std::u16string& target) {
  auto handle = handles_.find(reinterpret_cast<uintptr_t>(link));
  if (handle == handles_.end() || !handle->second.linkObject) return false;
  const std::u16string& text = linkObjects_.at(handle->second.key);
  if (text.size() * 2 > maximumBytes) return false;
  target = text;
  return true;
}

bool FakePathPlatform::DeviceIoControl(Handle device, uint32_t controlCode, std::vector<uint8_t>& output,
                                       uint32_t& bytesReturned) {
  auto handle = handles_.find(reinterpret_cast<uintptr_t>(device));
  if (handle == handles_.end() || handle->second.linkObject || controlCode != kGetReparsePoint) return false;
  // Opened without the reparse flag, the handle is the link's target, which is no reparse point.
  if ((handle->second.flags & kFlagOpenReparsePoint) == 0) return false;
  auto data = reparseData_.find(handle->second.key);
  if (data == reparseData_.end() || data->second.size() > output.size()) return false;
  std::copy(data->second.begin(), data->second.end(), output.begin());
  bytesReturned = static_cast<uint32_t>(data->second.size());
  return true;
}

}  // namespace SASM
