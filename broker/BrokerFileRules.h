#pragma once
// The plain rules of the broker's file family: how an open request becomes
// CreateFileW's arguments, which move flags pass, which results of a tree
// delete count as done, what a byte array must look like, and the one
// retrying open for reading.
#include <array>
#include <cstdint>

#include "broker/BrokerFilePlatform.h"

namespace SASM {

class BrokerFileRules {
 public:
  struct OpenArguments {
    uint32_t access;
    uint32_t disposition;
    uint32_t flags;
  };

  enum class Truncate : uint8_t { kAny, kZero, kNonZero };

  struct OpenRow {
    bool readOnly;
    Truncate truncate;
    OpenArguments arguments;
  };

  // BrokerCreateFile's two flags, row by row. A write-only handle means a file
  // can't be read back through the cookie it was written by.
  static constexpr std::array<OpenRow, 3> kOpenTable = {{
      {true, Truncate::kAny, {FileAccess::kGenericRead, FileDisposition::kOpenExisting, FileFlag::kSequentialScan}},
      {false, Truncate::kZero, {FileAccess::kGenericWrite, FileDisposition::kOpenAlways, FileFlag::kRandomAccess}},
      {false, Truncate::kNonZero,
       {FileAccess::kGenericWrite, FileDisposition::kCreateAlways, FileFlag::kRandomAccess}},
  }};

  // MOVEFILE_REPLACE_EXISTING, COPY_ALLOWED, DELAY_UNTIL_REBOOT, WRITE_THROUGH and 0x20.
  static constexpr uint32_t kMoveFlagsAllowed = 0x2F;

  // SHFileOperationW: delete, with no confirmation, no error UI and silently.
  static constexpr uint32_t kTreeDeleteOperation = 3;
  static constexpr uint16_t kTreeDeleteFlags = 0x0414;
  // Done, nothing there, or the shell's odd answers for a missing tree.
  static constexpr std::array<int32_t, 4> kTreeDeleteSuccesses = {0, 2, 124, 1026};

  // The arguments for p_readOnly and p_truncateOnOpen as the client gave them.
  static OpenArguments ForOpen(int32_t readOnly, int32_t truncateOnOpen);
  static bool IsMoveAllowed(int32_t flags);
  static bool IsTreeDeleteDone(int32_t result);
  // One dimension, elements of one byte, counted from 0.
  static bool IsWellFormedByteArray(const ByteArrayShape& shape);
  // CreateFileW answers failure with either value.
  static bool IsOpenFailure(BrokerFilePlatform::Handle handle) {
    return handle == 0 || handle == BrokerFilePlatform::kInvalidHandle;
  }
  // Whether a file must exist before it can be protected: an existing one only
  // when it is to be replaced, a missing one whenever the open would create it.
  static bool MustCreateBeforeProtecting(bool exists, uint32_t disposition);

  // Opens for reading with FILE_SHARE_READ and, if that fails, once more with
  // read and write sharing: a writer may hold the file. Returns the last error.
  static uint32_t OpenForReading(BrokerFilePlatform& files, const char16_t* path, uint32_t access,
                                 uint32_t disposition, uint32_t flags, BrokerFilePlatform::Handle& handle);
};

}  // namespace SASM
