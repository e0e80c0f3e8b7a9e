#pragma once
// The connection directory over the machine-wide kernel objects. Any process
// that opens these two names is in the directory; the names are the rendezvous.
#include <cstdint>

#include "connections/CoreLcdAccessor.h"
#include "connections/win32/ScopedMappedView.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WindowsApi.h"

namespace SASM {

class Win32LcdAccessor final : public CoreLcdAccessor {
 public:
  static constexpr const char* kMutexName = "HalcyonicsMutexOmega";
  static constexpr const char* kMappingName = "HalcyonicsFMOmega";
  static constexpr int32_t kMessageTimeout = 5000;

  // Opens the segment, creating and initialising it if this is the first
  // participant. Failure is silent: the accessor stays closed and Lock answers 0.
  Win32LcdAccessor();
  Win32LcdAccessor(const Win32LcdAccessor&) = delete;
  Win32LcdAccessor& operator=(const Win32LcdAccessor&) = delete;
  // A hold still in force is not released: closing is all that happens.
  ~Win32LcdAccessor() override = default;

  int32_t Lock() override;
  int32_t Unlock() override;
  uint32_t LockTime() override;
  int32_t MessageTimeout() override;

  bool IsOpen() const { return view_.get() != nullptr; }

 private:
  void Open();

  // Declared so that destruction unmaps the view, then closes the mapping, then the mutex.
  ScopedHandle mutex_;
  ScopedHandle mapping_;
  ScopedMappedView view_;  // null when closed; decides over the base's segment pointer
  uint32_t lockTime_ = 0;
  int32_t lockCount_ = 0;
};

}  // namespace SASM
