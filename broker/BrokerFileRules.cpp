#include "broker/BrokerFileRules.h"

#include <algorithm>

namespace SASM {

BrokerFileRules::OpenArguments BrokerFileRules::ForOpen(int32_t readOnly, int32_t truncateOnOpen) {
  Truncate truncate = truncateOnOpen != 0 ? Truncate::kNonZero : Truncate::kZero;
  for (const OpenRow& row : kOpenTable) {
    if (row.readOnly != (readOnly != 0)) continue;
    if (row.truncate == Truncate::kAny || row.truncate == truncate) return row.arguments;
  }
  // Every combination has its row; this only keeps the compiler content.
  return kOpenTable[0].arguments;
}

bool BrokerFileRules::IsMoveAllowed(int32_t flags) {
  return (static_cast<uint32_t>(flags) & ~kMoveFlagsAllowed) == 0;
}

bool BrokerFileRules::IsTreeDeleteDone(int32_t result) {
  return std::find(kTreeDeleteSuccesses.begin(), kTreeDeleteSuccesses.end(), result) != kTreeDeleteSuccesses.end();
}

bool BrokerFileRules::IsWellFormedByteArray(const ByteArrayShape& shape) {
  return shape.dimensions == 1 && shape.elementSize == 1 && shape.lowerBound == 0;
}

bool BrokerFileRules::MustCreateBeforeProtecting(bool exists, uint32_t disposition) {
  if (exists) return disposition == FileDisposition::kCreateAlways;
  return disposition == FileDisposition::kCreateNew || disposition == FileDisposition::kCreateAlways ||
         disposition == FileDisposition::kOpenAlways;
}

uint32_t BrokerFileRules::OpenForReading(BrokerFilePlatform& files, const char16_t* path, uint32_t access,
                                         uint32_t disposition, uint32_t flags, BrokerFilePlatform::Handle& handle) {
  uint32_t error = files.CreateFile(path, access, FileShare::kRead, disposition, flags, handle);
  if (IsOpenFailure(handle)) error = files.CreateFile(path, access, FileShare::kReadWrite, disposition, flags, handle);
  return error;
}

}  // namespace SASM
