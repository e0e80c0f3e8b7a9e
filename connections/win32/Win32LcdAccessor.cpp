#include "connections/win32/Win32LcdAccessor.h"

namespace SASM {

namespace {

// The page-rounded view is what absorbs an add's overrun past the segment.
static_assert(kLcdBlockSize <= kLcdMappedSize);
static_assert(FILE_MAP_ALL_ACCESS == 0xF001F);

}  // namespace

Win32LcdAccessor::Win32LcdAccessor() { Open(); }

void Win32LcdAccessor::Open() {
  SetLastError(0);
  // Created owned, so that nobody sees the segment before it is initialised.
  mutex_.reset(CreateMutexA(nullptr, TRUE, kMutexName));
  bool mayRelease = static_cast<bool>(mutex_);
  if (mutex_ && GetLastError() == ERROR_ALREADY_EXISTS) {
    // An abandoned wait counts as failure; the ownership it granted is kept.
    mayRelease = WaitForSingleObject(mutex_.get(), INFINITE) == WAIT_OBJECT_0;
  }
  if (mayRelease) {
    mapping_.reset(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      static_cast<DWORD>(kLcdSegmentSize), kMappingName));
    const DWORD mappingError = GetLastError();
    if (mapping_) {
      view_.reset(MapViewOfFile(mapping_.get(), FILE_MAP_ALL_ACCESS, 0, 0, kLcdSegmentSize));
      if (view_.get()) {
        AttachSegment(static_cast<LcdSegment*>(view_.get()), mappingError != ERROR_ALREADY_EXISTS);
        if (!IsSegmentValid()) {
          view_.reset();
          // Forget the unmapped block too, so that FindConnection cannot walk it.
          AttachSegment(nullptr, false);
        }
      }
    }
    ReleaseMutex(mutex_.get());
  }
  if (!view_.get()) {
    mapping_.reset();
    mutex_.reset();
  }
}

int32_t Win32LcdAccessor::Lock() {
  if (!view_.get()) return 0;
  if (lockCount_ > 0) {
    // Wraps as the count always has, without signed overflow.
    lockCount_ = static_cast<int32_t>(static_cast<uint32_t>(lockCount_) + 1);
    return lockCount_;
  }
  if (mutex_ && WaitForSingleObject(mutex_.get(), INFINITE) == WAIT_OBJECT_0) {
    lockTime_ = GetTickCount();
    lockCount_ = 1;
    return 1;
  }
  // WAIT_ABANDONED lands here: the caller is told no, and the ownership stays taken.
  lockCount_ = 0;
  return 0;
}

int32_t Win32LcdAccessor::Unlock() {
  if (lockCount_ >= 2) {
    --lockCount_;
  } else {
    // Also without a matching Lock; a failed release is ignored.
    if (mutex_) ReleaseMutex(mutex_.get());
    lockCount_ = 0;
  }
  return lockCount_;
}

uint32_t Win32LcdAccessor::LockTime() { return lockTime_; }

int32_t Win32LcdAccessor::MessageTimeout() { return kMessageTimeout; }

}  // namespace SASM
