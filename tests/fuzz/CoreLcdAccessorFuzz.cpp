// The connection directory's shared block as any process on the machine may
// leave it: the input's first 64,528 bytes are the segment, the rest is a
// program of the accessor's operations, with bytes rewritten between them as
// another writer would.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "connections/CoreLcdAccessor.h"

using namespace SASM;

namespace {

// Holds nest; the fuzzer decides when a lock is refused and what the clock says.
class FuzzLcdAccessor : public CoreLcdAccessor {
 public:
  int32_t Lock() override {
    if (locksLeft == 0) return 0;
    if (locksLeft > 0) --locksLeft;
    return ++holds;
  }
  int32_t Unlock() override { return --holds; }
  uint32_t LockTime() override { return tick; }
  int32_t MessageTimeout() override { return 5000; }

  int32_t locksLeft = -1;
  int32_t holds = 0;
  uint32_t tick = 0;
};

enum Operation : uint8_t { kFind, kAdd, kRemove, kDispatch, kTarget, kData, kClear, kPrune, kRewrite, kTick, kLocks, kAttach, kCount };

std::string Name(FuzzedDataProvider& input) {
  // Longer than the target buffer now and then; never with a NUL inside.
  std::string name = input.ConsumeRandomLengthString(1100);
  return name.substr(0, name.find('\0'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Exactly what an accessor may touch, so ASan reports any byte beyond it.
  std::unique_ptr<uint8_t[]> block(new uint8_t[kLcdBlockSize]);
  std::memset(block.get(), 0, kLcdBlockSize);
  std::memcpy(block.get(), data, std::min(size, kLcdBlockSize));
  auto* segment = reinterpret_cast<LcdSegment*>(block.get());
  FuzzedDataProvider input(data + std::min(size, kLcdSegmentSize), size - std::min(size, kLcdSegmentSize));

  FuzzLcdAccessor lcd;
  lcd.AttachSegment(segment, input.ConsumeBool());
  for (int steps = 0; steps < 64 && input.remaining_bytes() > 0; ++steps) {
    lcd.holds = 0;
    const uint32_t realm = input.ConsumeIntegralInRange<uint32_t>(0, 4);
    switch (input.ConsumeIntegralInRange<uint8_t>(0, kCount - 1)) {
      case kFind: {
        std::string name = Name(input);
        lcd.FindConnectionFormat(name.c_str(), realm);
        if (lcd.Lock() > 0) {
          lcd.FindConnection(name.c_str(), realm);
          lcd.Unlock();
        }
        break;
      }
      case kAdd: {
        std::string name = Name(input);
        const uint32_t realmToAdd = input.ConsumeBool() ? realm : input.ConsumeIntegral<uint32_t>();
        const int32_t version = input.ConsumeIntegral<int32_t>();
        const bool lockable = lcd.locksLeft != 0;
        const bool added = lcd.TryAddConnection(name.c_str(), realm, realmToAdd, version);
        // A name just added in a realm it was not found in is found there next,
        // with its format, unless its own bytes end the entry early.
        const auto stored = static_cast<uint8_t>(version);
        if (added && lockable && lcd.locksLeft != 0 && !name.empty() && realm < 3 && realmToAdd == realm &&
            stored != 0 && stored != 0x30 && lcd.FindConnectionFormat(name.c_str(), realm) != int8_t(stored) - 0x30) {
          std::abort();
        }
        break;
      }
      case kRemove:
        lcd.RemoveConnection(Name(input).c_str(), realm);
        break;
      case kDispatch: {
        // The broker passes at most the message area; a caller might say more or less than it has.
        std::vector<uint8_t> message = input.ConsumeBytes<uint8_t>(input.ConsumeIntegralInRange<size_t>(0, 2048));
        if (input.ConsumeBool() && message.size() >= 3) {
          message[0] = 2;
          message[1] = 0;
          message[2] = static_cast<uint8_t>(std::min<size_t>(message.size() - 3, 255));
        }
        const int32_t stated = input.ConsumeBool() ? static_cast<int32_t>(message.size())
                                                   : input.ConsumeIntegralInRange<int32_t>(-1, static_cast<int32_t>(message.size()));
        const int32_t result = lcd.DispatchMessage(message.data(), stated, input.ConsumeIntegralInRange<int32_t>(0, 12),
                                                   input.ConsumeIntegralInRange<int32_t>(-1, 12), realm);
        if (result < 0 || result > 2) std::abort();
        break;
      }
      case kTarget: {
        // The buffer is as large as the accessor is told, to the byte.
        const uint32_t targetSize = input.ConsumeIntegralInRange<uint32_t>(0, 1100);
        std::unique_ptr<char[]> target(new char[targetSize]);
        if (lcd.GetMessageTarget(target.get(), targetSize) && std::strlen(target.get()) >= targetSize) std::abort();
        break;
      }
      case kData: {
        const uint8_t* message = nullptr;
        int32_t messageSize = 0;
        if (lcd.GetMessageData(&message, &messageSize)) {
          if (messageSize > static_cast<int32_t>(LcdSegment::kMessageAreaSize)) std::abort();
          // Copy all of it out, as the broker does.
          std::vector<uint8_t> copy(message, message + messageSize);
        }
        break;
      }
      case kClear:
        lcd.ClearMessage();
        break;
      case kPrune:
        lcd.PruneDeadMessage();
        break;
      case kRewrite: {
        // Another process writes anywhere in the segment, its header words included.
        const size_t at = input.ConsumeIntegralInRange<size_t>(0, kLcdSegmentSize - 1);
        std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(input.ConsumeIntegralInRange<size_t>(1, 64));
        if (!bytes.empty()) std::memcpy(block.get() + at, bytes.data(), std::min(bytes.size(), kLcdSegmentSize - at));
        break;
      }
      case kTick:
        lcd.tick += input.ConsumeIntegral<uint32_t>();
        break;
      case kLocks:
        lcd.locksLeft = input.ConsumeIntegralInRange<int32_t>(-1, 3);
        break;
      case kAttach:
        lcd.AttachSegment(input.ConsumeBool() ? segment : nullptr, input.ConsumeBool());
        lcd.IsSegmentValid();
        break;
    }
  }
  return 0;
}
