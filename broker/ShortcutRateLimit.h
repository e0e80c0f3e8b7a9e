#pragma once
// One desktop shortcut per 3,001 milliseconds, for the whole process, so a
// client can't flood the desktop. Every call counts, refused ones too, so a
// client that keeps asking keeps being refused.
#include <cstdint>

namespace SASM {

class ShortcutRateLimit {
 public:
  static constexpr uint32_t kMinimumDistance = 3001;

  // Stores `now` as the tick of the latest call and says whether the one
  // before it lies far enough back. Ticks wrap as the platform's do.
  bool Admit(uint32_t now);

 private:
  uint32_t lastTick_ = 0;
};

}  // namespace SASM
