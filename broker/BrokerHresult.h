#pragma once
// The results every broker method answers with, and the one rule that turns
// a platform error into one of them.
#include <cstdint>

namespace SASM {

class BrokerHresult {
 public:
  static constexpr int32_t kOk = 0;
  // The negative answer of a method that asks a question.
  static constexpr int32_t kNo = 1;
  static constexpr int32_t kNotImplemented = static_cast<int32_t>(0x80004001);
  static constexpr int32_t kNoInterface = static_cast<int32_t>(0x80004002);
  static constexpr int32_t kPointer = static_cast<int32_t>(0x80004003);
  static constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
  static constexpr int32_t kAccessDenied = static_cast<int32_t>(0x80070005);
  static constexpr int32_t kOutOfMemory = static_cast<int32_t>(0x8007000E);
  static constexpr int32_t kInvalidArgument = static_cast<int32_t>(0x80070057);
  static constexpr int32_t kShortcutRefused = static_cast<int32_t>(0x80010010);

  // Zero or below stays; a positive value keeps its low 16 bits and gains 0x80070000.
  static int32_t FromPlatformError(int32_t error);
};

}  // namespace SASM
