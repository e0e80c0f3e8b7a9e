#pragma once
// Argument tests and result codes of the broker's directory methods, kept apart
// from COM so that each method is a thin wrapper over the accessor.
#include <cstdint>

#include "connections/LcdSegment.h"

namespace SASM {

class LcdBrokerRules {
 public:
  static constexpr int32_t kOk = 0;
  // The negative answer to a method that asks a question.
  static constexpr int32_t kNegative = 1;
  static constexpr int32_t kBadArgument = static_cast<int32_t>(0x80070057);
  static constexpr int32_t kFailure = static_cast<int32_t>(0x80004005);
  // The one place a message's size is limited.
  static constexpr uint32_t kMaxMessageSize = LcdSegment::kMessageAreaSize;

  // What the broker reads from the SAFEARRAY of a message before locking it.
  struct ArrayShape {
    bool present = false;
    uint32_t dimensions = 0;
    uint32_t elementSize = 0;
    int32_t lowerBound = 0;
    uint32_t elementCount = 0;
  };

  // How far BrokerLcdGetMessageData got.
  enum class MessageDataStep {
    kNoMessage,        // GetMessageData answered false
    kNoData,           // it answered true with a null pointer
    kArrayNotCreated,  // the output vector could not be made
    kArrayNotAccessed, // the vector is in the output but could not be filled
    kCopied,
  };

  // One dimension, one-byte elements, lower bound 0 and at most kMaxMessageSize
  // elements; anything else, or no array, fails with kFailure.
  static bool AcceptsMessageArray(const ArrayShape& shape);
  // DispatchMessage's 0 (not posted), 1 (posted), 2 (no target or format mismatch).
  static int32_t DispatchResult(int32_t dispatched);
  // Remove, add, clear, prune and target: kOk when the accessor said yes.
  static int32_t AnswerResult(bool yes);
  // kOk for any format but 0; the format goes to the output either way.
  static int32_t FormatResult(int32_t format);
  static int32_t MessageDataResult(MessageDataStep step);
};

}  // namespace SASM
