#pragma once
// The connection directory as every user sees it. The order of the operations
// is the order of the table other modules are built against; do not reorder.
#include <cstdint>

namespace SASM {

class ILcdAccessor {
 public:
  virtual ~ILcdAccessor() = default;

  // Count of nested holds; 0 or less means the lock was not obtained.
  virtual int32_t Lock() = 0;
  // Count of holds remaining.
  virtual int32_t Unlock() = 0;
  // Tick of the outermost hold now in force, in milliseconds.
  virtual uint32_t LockTime() = 0;

  // Names are NUL-terminated UTF-8. 0 when no such connection is listed.
  virtual int32_t FindConnectionFormat(const char* name, uint32_t realm) = 0;
  virtual bool RemoveConnection(const char* name, uint32_t realm) = 0;
  // Only the low byte of msgFormatVersion is stored.
  virtual bool TryAddConnection(const char* name, uint32_t realmToSeek, uint32_t realmToAdd,
                                int32_t msgFormatVersion) = 0;
  // Copies the posted message's target name out, NUL-terminated.
  virtual bool GetMessageTarget(char* target, uint32_t targetSize) = 0;
  // 0: slot busy or no lock; 1: posted; 2: no such target or format mismatch.
  virtual int32_t DispatchMessage(const void* data, int32_t size, int32_t senderVersion,
                                  int32_t expectedFormat, uint32_t realm) = 0;
  virtual bool ClearMessage() = 0;
  virtual bool PruneDeadMessage() = 0;
  // Age in milliseconds beyond which a posted message is dead.
  virtual int32_t MessageTimeout() = 0;
  // The pointer is into the shared segment and stays valid only while the
  // caller holds Lock itself.
  virtual bool GetMessageData(const uint8_t** data, int32_t* size) = 0;
};

}  // namespace SASM
