#include "connections/CoreLcdAccessor.h"

#include <algorithm>
#include <cstring>

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
  // The name goes with at most two four-byte suffixes, judged by their colons only.
  size_t removed = std::strlen(name) + 1;
  for (int suffix = 0; suffix < 2; ++suffix) {
    if (ByteAt(entry, removed) != kColon || ByteAt(entry, removed + 1) != kColon) break;
    removed += 4;
  }
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
    for (size_t removals = 0; removals < kMaxRemovalsPerPrune && RemoveConnection(target, kAnyRealm);
         ++removals) {
    }
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
