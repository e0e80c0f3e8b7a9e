#pragma once
// The directory's logic over an attached segment. Lock, Unlock, LockTime and
// MessageTimeout belong to the platform class; every operation here reaches
// the others through the virtual interface, so holds nest.
#include <cstddef>
#include <cstdint>

#include "connections/ILcdAccessor.h"
#include "connections/LcdSegment.h"

namespace SASM {

class CoreLcdAccessor : public virtual ILcdAccessor {
 public:
  static constexpr uint32_t kTargetBufferSize = 1024;
  static constexpr uint32_t kAnyRealm = 3;

  int32_t FindConnectionFormat(const char* name, uint32_t realm) override;
  bool RemoveConnection(const char* name, uint32_t realm) override;
  bool TryAddConnection(const char* name, uint32_t realmToSeek, uint32_t realmToAdd,
                        int32_t msgFormatVersion) override;
  bool GetMessageTarget(char* target, uint32_t targetSize) override;
  int32_t DispatchMessage(const void* data, int32_t size, int32_t senderVersion, int32_t expectedFormat,
                          uint32_t realm) override;
  bool ClearMessage() override;
  bool PruneDeadMessage() override;
  bool GetMessageData(const uint8_t** data, int32_t* size) override;

  // The caller holds the lock. Returns the matching entry, or the list's
  // terminator when there is none, or null without a segment (or when the list
  // has no terminator inside the block).
  uint8_t* FindConnection(const char* name, uint32_t realm);
  // The caller holds the lock. Removes every entry of this name in every realm,
  // at most maxRemovals of them, leaving the block byte for byte as repeated
  // RemoveConnection calls would, in one pass. Returns how many went.
  size_t RemoveEveryConnection(const char* name, size_t maxRemovals);
  // The block must own kLcdBlockSize bytes: adds may write past the segment.
  void AttachSegment(LcdSegment* segment, bool initialise);
  bool IsSegmentValid() const;

 private:
  uint8_t* BlockStart() const { return reinterpret_cast<uint8_t*>(segment_); }
  // Bytes of the block from p on.
  size_t Room(const uint8_t* p) const { return kLcdBlockSize - static_cast<size_t>(p - BlockStart()); }
  // Reads past the block count as NUL.
  uint8_t ByteAt(const uint8_t* p, size_t offset) const { return offset < Room(p) ? p[offset] : 0; }
  // Length of the string at p, or kNoEnd when it runs out of the block.
  size_t StringLength(const uint8_t* p) const;
  bool ReadTarget(char* target, uint32_t targetSize) const;
  bool RemoveEntry(const char* name, uint32_t realm);
  bool RemoveEntryAt(uint8_t* entry, size_t nameLength);
  // How many bytes a removal at entry takes: the name and up to two suffixes.
  size_t RemovalLength(const uint8_t* entry, size_t nameLength) const;
  // The first empty string walking from p, or null when the walk leaves the block.
  uint8_t* ListEnd(uint8_t* p) const;
  int32_t Post(const void* data, int32_t size, int32_t senderVersion, int32_t expectedFormat,
                      uint32_t realm);
  bool PruneIfDead();

  static constexpr size_t kNoEnd = static_cast<size_t>(-1);

  LcdSegment* segment_ = nullptr;  // not owned
};

}  // namespace SASM
