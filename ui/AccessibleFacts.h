#pragma once
// What a screen reader is told about one region: its name, role, state and
// place. The values are the platform accessibility interface's constants; the
// object that answers the reader lives with the platform code.
#include <cstdint>

#include "engine/MString.h"
#include "ui/MRect.h"

namespace SASM {

class MRegion;

class AccessibleFacts {
 public:
  static constexpr int32_t kRoleStaticText = 41;
  static constexpr int32_t kRolePushButton = 43;
  static constexpr int32_t kRoleCheckButton = 44;
  static constexpr int32_t kRoleRadioButton = 45;

  static constexpr int32_t kStateFocused = 4;
  static constexpr int32_t kStateChecked = 16;
  static constexpr int32_t kStateReadOnly = 64;
  static constexpr int32_t kStateFocusable = 1048576;

  static constexpr uint16_t kVariantI4 = 3;
  static constexpr int32_t kChildSelf = 0;

  static const MString& Name(const MRegion& region);
  static int32_t Role(const MRegion& region);
  // The flags to add to what the caller's answer already holds.
  static int32_t State(const MRegion& region);
  // bounds in the top-level window's client coordinates, through every ancestor.
  static MRect ClientLocation(const MRegion& region);
  // A child id names the region itself only as a 32-bit integer 0; nothing else is valid.
  static bool IsSelf(uint16_t variantType, int32_t value) { return variantType == kVariantI4 && value == kChildSelf; }
};

}  // namespace SASM
