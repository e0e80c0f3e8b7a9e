#include "broker/ExecutableSniffer.h"

#include <new>

#include "broker/BrokerFileRules.h"
#include "broker/BrokerHresult.h"

namespace SASM {

namespace {

enum class StepKind : uint8_t { kWant, kKeep, kTakeHeaderOffset };
enum class Verdict : uint8_t { kNone, kSniffActive, kExecutableSeen };

struct SniffStep {
  StepKind kind;
  // Counted from the header offset rather than from the start of the file.
  bool fromHeader;
  int32_t position;
  uint8_t expected;
  int slot;
  Verdict verdict;
};

// The ten bytes, in the order they are looked at. The chain stops as soon as
// a verdict clears the sniffing.
constexpr SniffStep kChain[] = {
    {StepKind::kWant, false, 0, 'M', 0, Verdict::kSniffActive},
    {StepKind::kWant, false, 1, 'Z', 1, Verdict::kSniffActive},
    {StepKind::kKeep, false, 60, 0, 2, Verdict::kNone},
    {StepKind::kKeep, false, 61, 0, 3, Verdict::kNone},
    {StepKind::kKeep, false, 62, 0, 4, Verdict::kNone},
    {StepKind::kKeep, false, 63, 0, 5, Verdict::kNone},
    {StepKind::kTakeHeaderOffset, false, 0, 0, 0, Verdict::kNone},
    {StepKind::kWant, true, 0, 'P', 6, Verdict::kSniffActive},
    {StepKind::kWant, true, 1, 'E', 7, Verdict::kSniffActive},
    {StepKind::kWant, true, 2, 0, 8, Verdict::kSniffActive},
    {StepKind::kWant, true, 3, 0, 9, Verdict::kExecutableSeen},
};

// start <= x <= start + length, with both ends counting: the upper end lets
// the last position see the byte just behind a range.
bool InRange(int64_t x, int64_t start, int64_t length) { return start <= x && x <= start + length; }

}  // namespace

int32_t ExecutableSniffer::WriteSlice(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle,
                                      const uint8_t* data, uint32_t length, uint32_t& numWritten) {
  int32_t result = BrokerHresult::kOk;
  if (record.sniffActive || record.peOffset > record.seekBase) {
    std::vector<uint8_t> readBack;
    if (record.seekBase != 0 && record.lastWriteSize == 0) {
      int32_t readBackResult = ReadBack(record, handle, readBack);
      if (readBackResult != BrokerHresult::kOk) result = readBackResult;
    }
    uint32_t prior = record.lastWriteSize;
    record.lastWriteSize = 0;
    if (record.sniffActive) {
      Judgement judgement{record, data, length, readBack, prior};
      Judge(judgement);
    }
  }

  if (record.executableSeen) {
    Refuse(record, handle);
    return BrokerHresult::kFail;
  }

  uint32_t error = files_.WriteFile(handle, data, length, numWritten);
  if (error != 0) result = BrokerHresult::FromPlatformError(static_cast<int32_t>(error));
  // Counted even when the write failed: the position is the client's view.
  record.writePosition += length;
  record.lastWriteSize = length;
  return result;
}

int32_t ExecutableSniffer::ReadBack(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle,
                                    std::vector<uint8_t>& bytes) {
  int32_t result = BrokerHresult::kOk;
  uint32_t error = 0;
  if (files_.SetFilePointer(handle, 0, FileMoveMethod::kBegin, error) == ~uint32_t{0}) {
    result = BrokerHresult::FromPlatformError(static_cast<int32_t>(error));
  }
  // A negative seek can't size a buffer; nothing is read back then.
  if (record.seekBase < 0) return BrokerHresult::kOutOfMemory;
  try {
    bytes.assign(static_cast<size_t>(record.seekBase), 0);
  } catch (const std::bad_alloc&) {
    return BrokerHresult::kOutOfMemory;
  }

  const char16_t* path = record.filePath ? record.filePath->c_str() : nullptr;
  BrokerFilePlatform::Handle reader = BrokerFilePlatform::kInvalidHandle;
  error = BrokerFileRules::OpenForReading(files_, path, FileAccess::kGenericRead, FileDisposition::kOpenExisting,
                                          FileFlag::kSequentialScan, reader);
  if (BrokerFileRules::IsOpenFailure(reader)) {
    return error != 0 ? BrokerHresult::FromPlatformError(static_cast<int32_t>(error)) : result;
  }
  uint32_t read = 0;
  error = files_.ReadFile(reader, bytes.data(), static_cast<uint32_t>(bytes.size()), read);
  if (error != 0) result = BrokerHresult::FromPlatformError(static_cast<int32_t>(error));
  files_.CloseHandle(reader);
  return result;
}

void ExecutableSniffer::Judge(Judgement& judgement) {
  BrokerCookieRecord& record = judgement.record;
  for (const SniffStep& step : kChain) {
    int64_t position = step.position;
    if (step.fromHeader) position += record.peOffset;
    switch (step.kind) {
      case StepKind::kWant: {
        uint8_t& verdict = step.verdict == Verdict::kExecutableSeen ? record.executableSeen : record.sniffActive;
        Want(judgement, position, step.expected, step.slot, verdict);
        break;
      }
      case StepKind::kKeep:
        Keep(judgement, position, step.slot);
        break;
      case StepKind::kTakeHeaderOffset:
        if (record.lastWriteSize == kHeaderOffsetEnd) {
          const uint8_t* slots = record.sniffBytes + 2;
          record.peOffset = static_cast<int32_t>(static_cast<uint32_t>(slots[0]) | static_cast<uint32_t>(slots[1]) << 8 |
                                                 static_cast<uint32_t>(slots[2]) << 16 |
                                                 static_cast<uint32_t>(slots[3]) << 24);
        }
        break;
    }
    if (!record.sniffActive) break;
  }
  // Whatever the chain saw, this cookie is judged once.
  record.sniffActive = 0;
}

ExecutableSniffer::Source ExecutableSniffer::Locate(const Judgement& judgement, int64_t position, uint8_t& byte) {
  const BrokerCookieRecord& record = judgement.record;
  int64_t seekBase = record.seekBase;
  int64_t writePosition = record.writePosition;
  if (seekBase <= position && InRange(position - seekBase, writePosition, judgement.length)) {
    // The upper end may name the byte just behind the slice; it isn't ours to
    // read, so it counts as 0.
    int64_t index = position - seekBase - writePosition;
    byte = index < judgement.length && judgement.data ? judgement.data[index] : 0;
    return Source::kSlice;
  }
  if (static_cast<int64_t>(judgement.prior) > position) return Source::kPrior;
  if (InRange(position, writePosition, seekBase)) {
    // Likewise behind the read-back, or where nothing could be read back.
    int64_t index = position - writePosition;
    byte = index < static_cast<int64_t>(judgement.readBack.size()) ? judgement.readBack[index] : 0;
    return Source::kReadBack;
  }
  return Source::kNowhere;
}

void ExecutableSniffer::Want(Judgement& judgement, int64_t position, uint8_t expected, int slot, uint8_t& verdict) {
  BrokerCookieRecord& record = judgement.record;
  uint8_t byte = 0;
  Source source = Locate(judgement, position, byte);
  // A position nobody can see is no mismatch.
  if (source == Source::kNowhere) return;
  if (source == Source::kPrior) byte = record.sniffBytes[slot];
  bool holds = byte == expected;
  verdict = holds ? 1 : 0;
  if (holds) {
    record.sniffBytes[slot] = expected;
    record.lastWriteSize = static_cast<uint32_t>(position + 1);
  }
}

void ExecutableSniffer::Keep(Judgement& judgement, int64_t position, int slot) {
  BrokerCookieRecord& record = judgement.record;
  uint8_t byte = 0;
  Source source = Locate(judgement, position, byte);
  if (source == Source::kNowhere) return;
  if (source != Source::kPrior) record.sniffBytes[slot] = byte;
  record.lastWriteSize = static_cast<uint32_t>(position + 1);
}

void ExecutableSniffer::Refuse(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle) {
  if (BrokerFileRules::IsOpenFailure(handle)) return;
  if (!files_.CloseHandle(handle)) return;
  files_.DeleteFile(record.filePath ? record.filePath->c_str() : nullptr);
  // The cookie stays; its handle is gone, so a later close has nothing to do.
  record.handle = BrokerCookieRecord::kNoHandle;
}

}  // namespace SASM
