#include "connections/CoreLcdAccessor.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace SASM {

namespace {

constexpr uint8_t kColon = ':';
// Offset of connectionList from the segment start, less the five bytes an add
// may overrun: the add bound is written against this.
constexpr uint64_t kAddBoundBase = 40971;
constexpr uint8_t kShortNameEncoding = 2;  // 2-byte big-endian length, 3-byte header
constexpr uint8_t kLongNameEncoding = 12;  // 4-byte big-endian length, 5-byte header
// A well-formed list holds fewer entries than this, so a prune that removes
// more is walking a corrupted list and must stop.
constexpr size_t kMaxRemovalsPerPrune = LcdSegment::kConnectionListSize;

}  // namespace

size_t CoreLcdAccessor::StringLength(const uint8_t* p) const {
  const void* nul = std::memchr(p, 0, Room(p));
  return nul ? static_cast<size_t>(static_cast<const uint8_t*>(nul) - p) : kNoEnd;
}

uint8_t* CoreLcdAccessor::FindConnection(const char* name, uint32_t realm) {
  if (!segment_) return nullptr;
  const size_t nameLength = std::strlen(name);
  uint8_t* p = segment_->connectionList;
  // Suffixes are walked as strings like any other; only position tells them apart.
  while (Room(p) > 0) {
    const size_t length = StringLength(p);
    if (length == kNoEnd) return nullptr;
    if (length == 0) return p;
    if (length == nameLength && std::memcmp(p, name, length) == 0) {
      const size_t l = length;
      // An entry without both suffixes belongs to every realm.
      if (ByteAt(p, l + 1) != kColon || ByteAt(p, l + 2) != kColon || ByteAt(p, l + 5) != kColon ||
          ByteAt(p, l + 6) != kColon) {
        return p;
      }
      const int32_t entryRealm = static_cast<int8_t>(ByteAt(p, l + 7)) - 0x31;
      // Realms {0, 2} and {1} never see each other; anything else matches.
      const bool otherFamily = (realm == 1 && (entryRealm == 0 || entryRealm == 2)) ||
                               (entryRealm == 1 && (realm == 0 || realm == 2));
      if (!otherFamily) return p;
    }
    p += length + 1;
  }
  return nullptr;
}

int32_t CoreLcdAccessor::FindConnectionFormat(const char* name, uint32_t realm) {
  if (Lock() < 1) return 0;
  int32_t format = 0;
  const uint8_t* entry = FindConnection(name, realm);
  if (entry && *entry != 0) {
    const size_t l = std::strlen(name);
    // Stored as the caller's byte, read back as a digit: the asymmetry is relied on.
    format = (ByteAt(entry, l + 1) == kColon && ByteAt(entry, l + 2) == kColon)
                 ? static_cast<int8_t>(ByteAt(entry, l + 3)) - 0x30
                 : 1;
  }
  Unlock();
  return format;
}

bool CoreLcdAccessor::TryAddConnection(const char* name, uint32_t realmToSeek, uint32_t realmToAdd,
                                       int32_t msgFormatVersion) {
  if (Lock() < 1) return false;
  bool added = false;
  const size_t l = std::strlen(name);
  uint8_t* at = FindConnection(name, realmToSeek);
  if (at && *at == 0) {
    const uint64_t offset = static_cast<uint64_t>(at - BlockStart());
    // Counts five of the ten bytes written; the rest land in kLcdListOverrun.
    if (offset - kAddBoundBase + l <= LcdSegment::kConnectionListSize) {
      std::memcpy(at, name, l + 1);
      uint8_t* suffix = at + l + 1;
      suffix[0] = kColon;
      suffix[1] = kColon;
      suffix[2] = static_cast<uint8_t>(msgFormatVersion);
      suffix[3] = 0;
      suffix[4] = kColon;
      suffix[5] = kColon;
      suffix[6] = static_cast<uint8_t>(realmToAdd + 0x31);
      suffix[7] = 0;
      suffix[8] = 0;
      added = true;
    }
  }
  Unlock();
  return added;
}

bool CoreLcdAccessor::RemoveConnection(const char* name, uint32_t realm) {
  if (Lock() < 1) return false;
  const bool removed = RemoveEntry(name, realm);
  Unlock();
  return removed;
}

bool CoreLcdAccessor::RemoveEntry(const char* name, uint32_t realm) {
  uint8_t* entry = FindConnection(name, realm);
  if (!entry || *entry == 0) return false;
  return RemoveEntryAt(entry, std::strlen(name));
}

size_t CoreLcdAccessor::RemovalLength(const uint8_t* entry, size_t nameLength) const {
  // The name goes with at most two four-byte suffixes, judged by their colons only.
  size_t removed = nameLength + 1;
  for (int suffix = 0; suffix < 2; ++suffix) {
    if (ByteAt(entry, removed) != kColon || ByteAt(entry, removed + 1) != kColon) break;
    removed += 4;
  }
  return removed;
}

bool CoreLcdAccessor::RemoveEntryAt(uint8_t* entry, size_t nameLength) {
  const size_t removed = RemovalLength(entry, nameLength);
  size_t end = removed;
  for (;;) {
    if (end >= Room(entry)) return false;
    const size_t length = StringLength(entry + end);
    if (length == kNoEnd) return false;
    if (length == 0) break;
    end += length + 1;
  }
  std::memmove(entry, entry + removed, end - removed + 1);
  return true;
}

uint8_t* CoreLcdAccessor::ListEnd(uint8_t* p) const {
  while (Room(p) > 0) {
    const size_t length = StringLength(p);
    if (length == kNoEnd) return nullptr;
    if (length == 0) return p;
    p += length + 1;
  }
  return nullptr;
}

size_t CoreLcdAccessor::RemoveEveryConnection(const char* name, size_t maxRemovals) {
  if (!segment_) return 0;
  const size_t l = std::strlen(name);
  // Names are found string by string and are never empty; realm 3 matches every entry.
  auto matches = [&](const uint8_t* p, size_t length) { return l > 0 && length == l && std::memcmp(p, name, l) == 0; };
  size_t removals = 0;
  uint8_t* start = segment_->connectionList;
  while (removals < maxRemovals) {
    uint8_t* end = ListEnd(start);
    if (!end) {
      // No terminator: only a removal whose own walk stops early can succeed.
      uint8_t* p = start;
      while (Room(p) > 0) {
        const size_t length = StringLength(p);
        if (length == kNoEnd || length == 0 || matches(p, length)) break;
        p += length + 1;
      }
      if (Room(p) == 0 || StringLength(p) == kNoEnd || *p == 0 || !RemoveEntryAt(p, l)) return removals;
      ++removals;
      start = p;
      continue;
    }

    // Kept strings are copied down to `write` once; a removal only moves `read`
    // on. Each removal the step-by-step way would leave the list's last bytes
    // behind its shortened end: their lengths are kept to put them back.
    uint8_t* write = start;
    uint8_t* read = start;
    std::vector<size_t> removedLengths;
    uint8_t* special = nullptr;
    while (read < end) {
      const size_t length = StringLength(read);
      if (removals < maxRemovals && matches(read, length)) {
        const size_t removed = RemovalLength(read, l);
        uint8_t* next = read + removed;
        // Past the end, or onto the NUL closing a string: that walk ends elsewhere.
        if (next > end || (*next == 0 && next[-1] != 0)) {
          special = read;
          break;
        }
        removedLengths.push_back(removed);
        ++removals;
        read = next;
        continue;
      }
      std::memmove(write, read, length + 1);
      write += length + 1;
      read += length + 1;
    }

    // What is left, terminator included, then the bytes each removal left behind.
    const size_t left = static_cast<size_t>(end - read) + 1;
    size_t tailLength = 0;
    for (size_t removed : removedLengths) tailLength = std::max(tailLength, removed);
    const std::vector<uint8_t> tail(end + 1 - tailLength, end + 1);
    std::memmove(write, read, left);
    uint8_t* stale = end + 1;
    for (size_t removed : removedLengths) {
      stale -= removed;
      std::memcpy(stale, tail.data() + tailLength - removed, removed);
    }
    if (!special) return removals;
    // A malformed last entry: this one removal goes the step-by-step way.
    uint8_t* entry = write;
    if (!RemoveEntryAt(entry, l)) return removals;
    ++removals;
    start = entry;
  }
  return removals;
}

bool CoreLcdAccessor::GetMessageTarget(char* target, uint32_t targetSize) {
  if (Lock() < 1) return false;
  const bool found = ReadTarget(target, targetSize);
  Unlock();
  return found;
}

bool CoreLcdAccessor::ReadTarget(char* target, uint32_t targetSize) const {
  if (!segment_ || segment_->messageSize <= 1) return false;
  const uint8_t* message = segment_->messageArea;
  uint32_t length = 0;
  uint32_t header = 0;
  if (message[0] == kShortNameEncoding) {
    length = (uint32_t{message[1]} << 8) | message[2];
    header = 3;
  } else if (message[0] == kLongNameEncoding) {
    length = (uint32_t{message[1]} << 24) | (uint32_t{message[2]} << 16) | (uint32_t{message[3]} << 8) |
             message[4];
    header = 5;
  } else {
    return false;
  }
  // 32-bit arithmetic on purpose: these are the checks other readers make.
  if (static_cast<uint32_t>(length + header) > segment_->messageSize) return false;
  if (static_cast<uint32_t>(length + 1) > targetSize || static_cast<uint32_t>(length + 1) < length) {
    return false;
  }
  // The checks above can wrap; never read a name from outside the message area.
  if (uint64_t{header} + length > LcdSegment::kMessageAreaSize) return false;
  std::memcpy(target, message + header, length);
  target[length] = 0;
  return true;
}

int32_t CoreLcdAccessor::DispatchMessage(const void* data, int32_t size, int32_t senderVersion,
                                         int32_t expectedFormat, uint32_t realm) {
  if (Lock() < 1) return 0;
  const int32_t result = Post(data, size, senderVersion, expectedFormat, realm);
  Unlock();
  return result;
}

int32_t CoreLcdAccessor::Post(const void* data, int32_t size, int32_t senderVersion, int32_t expectedFormat,
                              uint32_t realm) {
  if (!segment_ || segment_->messageSize != 0) return 0;
  segment_->messageTime = LockTime();
  segment_->messageSize = static_cast<uint32_t>(size);
  // The caller limits the size; the copy still never leaves the message area.
  const size_t copied = size > 0 ? std::min<size_t>(static_cast<size_t>(size), LcdSegment::kMessageAreaSize) : 0;
  if (copied > 0) std::memcpy(segment_->messageArea, data, copied);

  // The message sits in the slot, keeping it busy, while its target is examined.
  char target[kTargetBufferSize];
  if (!GetMessageTarget(target, sizeof target)) return 1;
  const int32_t format = FindConnectionFormat(target, realm);
  if (format == 0) {
    ClearMessage();
    return 2;
  }
  if (senderVersion < 9 || format == expectedFormat) return 1;
  // Senders of version 9 and 10 are told of the mismatch but their message stays.
  if (senderVersion >= 11) ClearMessage();
  return 2;
}

bool CoreLcdAccessor::ClearMessage() {
  if (Lock() < 1) return false;
  if (segment_) {
    segment_->messageTime = 0;
    segment_->messageSize = 0;
  }
  Unlock();
  return true;
}

bool CoreLcdAccessor::GetMessageData(const uint8_t** data, int32_t* size) {
  if (Lock() < 1) return false;
  const int32_t stored = segment_ ? static_cast<int32_t>(segment_->messageSize) : 0;
  const bool present = stored > 0;
  *data = present ? segment_->messageArea : nullptr;
  // Never describe memory beyond the message area, whatever another writer stored.
  *size = present ? std::min<int32_t>(stored, LcdSegment::kMessageAreaSize) : 0;
  Unlock();
  return present;
}

bool CoreLcdAccessor::PruneDeadMessage() {
  if (Lock() < 1) return false;
  const bool pruned = PruneIfDead();
  Unlock();
  return pruned;
}

bool CoreLcdAccessor::PruneIfDead() {
  if (!segment_ || segment_->messageSize == 0) return false;
  // Signed, so a stamp ahead of the lock time is young and tick wrap-around is harmless.
  const int32_t age = static_cast<int32_t>(LockTime() - segment_->messageTime);
  if (age <= MessageTimeout()) return false;
  char target[kTargetBufferSize];
  if (GetMessageTarget(target, sizeof target)) {
    // A receiver that never collected loses its name, in every realm.
    RemoveEveryConnection(target, kMaxRemovalsPerPrune);
  }
  ClearMessage();
  return true;
}

void CoreLcdAccessor::AttachSegment(LcdSegment* segment, bool initialise) {
  segment_ = segment;
  if (!initialise || !segment) return;
  // Only these words: the rest stays as the platform delivered it.
  segment->layoutVersion = 1;
  segment->secondMark = 1;
  segment->connectionList[0] = 0;
  segment->messageSize = 0;
  segment->messageTime = 0;
}

bool CoreLcdAccessor::IsSegmentValid() const { return segment_ && segment_->layoutVersion == 1; }

}  // namespace SASM
