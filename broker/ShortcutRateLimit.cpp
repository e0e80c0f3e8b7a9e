#include "broker/ShortcutRateLimit.h"

namespace SASM {

bool ShortcutRateLimit::Admit(uint32_t now) {
  const uint32_t distance = now - lastTick_;
  lastTick_ = now;
  return distance >= kMinimumDistance;
}

}  // namespace SASM
