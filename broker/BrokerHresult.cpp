#include "broker/BrokerHresult.h"

namespace SASM {

int32_t BrokerHresult::FromPlatformError(int32_t error) {
  if (error <= 0) return error;
  return static_cast<int32_t>((static_cast<uint32_t>(error) & 0xFFFFu) | 0x80070000u);
}

}  // namespace SASM
