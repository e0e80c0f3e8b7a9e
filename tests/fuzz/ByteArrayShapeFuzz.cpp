// What the broker reads of a client's byte array before it touches the bytes:
// the file family's shape test and the directory's message test. An array
// either test accepts is handed on, so it must be safe to use as described.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "broker/BrokerFileRules.h"
#include "broker/ByteArrayShape.h"
#include "connections/CoreLcdAccessor.h"
#include "connections/LcdBrokerRules.h"

using namespace SASM;

namespace {

class OpenLcdAccessor : public CoreLcdAccessor {
 public:
  int32_t Lock() override { return 1; }
  int32_t Unlock() override { return 0; }
  uint32_t LockTime() override { return 0; }
  int32_t MessageTimeout() override { return 5000; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  ByteArrayShape shape;
  shape.dimensions = input.ConsumeIntegralInRange<uint32_t>(0, 3) == 3 ? input.ConsumeIntegral<uint32_t>() : 1;
  shape.elementSize = input.ConsumeIntegralInRange<uint32_t>(0, 3) == 3 ? input.ConsumeIntegral<uint32_t>() : 1;
  shape.lowerBound = input.ConsumeIntegralInRange<uint32_t>(0, 3) == 3 ? input.ConsumeIntegral<int32_t>() : 0;
  shape.count = input.ConsumeBool() ? input.ConsumeIntegral<uint32_t>()
                                    : input.ConsumeIntegralInRange<uint32_t>(0, LcdBrokerRules::kMaxMessageSize + 2);
  const bool wellFormed = BrokerFileRules::IsWellFormedByteArray(shape);
  if (wellFormed != (shape.dimensions == 1 && shape.elementSize == 1 && shape.lowerBound == 0)) std::abort();

  LcdBrokerRules::ArrayShape message{input.ConsumeIntegralInRange<int>(0, 7) != 0, shape.dimensions, shape.elementSize,
                                     shape.lowerBound, shape.count};
  if (!LcdBrokerRules::AcceptsMessageArray(message)) return 0;
  if (!wellFormed || !message.present || shape.count > LcdBrokerRules::kMaxMessageSize) std::abort();

  // An accepted message goes to the directory at its stated size: the array
  // holds exactly that many bytes, and the segment exactly its block.
  std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(shape.count);
  bytes.resize(shape.count);
  std::unique_ptr<uint8_t[]> block(new uint8_t[kLcdBlockSize]);
  std::memset(block.get(), 0, kLcdBlockSize);
  OpenLcdAccessor lcd;
  lcd.AttachSegment(reinterpret_cast<LcdSegment*>(block.get()), true);
  if (input.ConsumeBool()) lcd.TryAddConnection("target", 0, 0, '3');
  const int32_t dispatched = lcd.DispatchMessage(bytes.data(), static_cast<int32_t>(shape.count), 11, 3, 0);
  LcdBrokerRules::DispatchResult(dispatched);
  const uint8_t* stored = nullptr;
  int32_t storedSize = 0;
  if (lcd.GetMessageData(&stored, &storedSize) &&
      (storedSize != static_cast<int32_t>(shape.count) || std::memcmp(stored, bytes.data(), bytes.size()) != 0)) {
    std::abort();
  }
  return 0;
}
