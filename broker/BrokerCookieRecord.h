#pragma once
// One entry of a broker object's table: an open file, a file chosen but not yet
// opened, a find handle or a download session. Nothing in the record says
// which; the methods that use a cookie decide.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "broker/BrokerDownloadSession.h"
#include "broker/DeferredOpen.h"

namespace SASM {

struct BrokerCookieRecord {
  // The handle of a record that has none: INVALID_HANDLE_VALUE.
  static constexpr uint64_t kNoHandle = ~uint64_t{0};

  uint32_t cookie = 0;
  // Never closed by the table: whoever frees a cookie closes its handle first.
  uint64_t handle = kNoHandle;
  uint8_t executableSeen = 0;
  uint8_t sniffActive = 0;
  uint8_t sniffBytes[10] = {};
  int32_t peOffset = 0;
  uint32_t writePosition = 0;
  // Absent when the record keeps no path.
  std::optional<std::u16string> filePath;
  int32_t seekBase = 0;
  uint32_t lastWriteSize = 0;
  std::unique_ptr<DeferredOpen> deferredOpen;
  std::unique_ptr<BrokerDownloadSession> download;
  BrokerCookieRecord* next = nullptr;
};

}  // namespace SASM
