#pragma once
#include <cstdint>

namespace SASM {

// One flag per product; operations take one or several.
namespace ProductKind {
constexpr uint32_t kActiveX = 8;
constexpr uint32_t kNpapi = 16;
constexpr uint32_t kPpapi = 32768;
// Passed to the key functions to mean the base key with no suffix.
constexpr uint32_t kBase = 1;
// Files of no product, and the broker's own executables.
constexpr uint32_t kNone = 0;
constexpr uint32_t kServerFile = 2;
constexpr uint32_t kAll[] = {kActiveX, kNpapi, kPpapi};
}  // namespace ProductKind

// Bits of HostCallbacks::GetFlags beyond the three kinds.
namespace HostFlag {
constexpr uint32_t kReleasePlayer = 1024;
// This exact value labels the quit button by the install source.
constexpr uint32_t kQuitByInstallSource = 130;
}  // namespace HostFlag

}  // namespace SASM
