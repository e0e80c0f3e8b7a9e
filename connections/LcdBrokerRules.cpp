#include "connections/LcdBrokerRules.h"

namespace SASM {

bool LcdBrokerRules::AcceptsMessageArray(const ArrayShape& shape) {
  return shape.present && shape.dimensions == 1 && shape.elementSize == 1 && shape.lowerBound == 0 &&
         shape.elementCount < kMaxMessageSize + 1;
}

int32_t LcdBrokerRules::DispatchResult(int32_t dispatched) {
  switch (dispatched) {
    case 0:
      return kNegative;
    case 1:
      return kOk;
    case 2:
      return kBadArgument;
    default:
      // The accessor answers nothing else.
      return kFailure;
  }
}

int32_t LcdBrokerRules::AnswerResult(bool yes) { return yes ? kOk : kNegative; }

int32_t LcdBrokerRules::FormatResult(int32_t format) { return format != 0 ? kOk : kNegative; }

int32_t LcdBrokerRules::MessageDataResult(MessageDataStep step) {
  switch (step) {
    case MessageDataStep::kNoMessage:
      return kNegative;
    case MessageDataStep::kNoData:
    case MessageDataStep::kArrayNotCreated:
      return kFailure;
    case MessageDataStep::kArrayNotAccessed:
      // Clients have always been handed the unfilled vector as a success.
    case MessageDataStep::kCopied:
      return kOk;
  }
  return kFailure;
}

}  // namespace SASM
