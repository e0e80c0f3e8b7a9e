#include "broker/win32/Win32SignedMessageCheck.h"

namespace SASM {

// Refuses until the add-on channel's check is joined.
bool Win32SignedMessageCheck::Verify(const uint8_t*, size_t, std::vector<uint8_t>&) { return false; }

}  // namespace SASM
