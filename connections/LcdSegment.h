#pragma once
// The connection directory's shared block. Processes that know nothing of this
// code map the same bytes, so the layout is a wire format: keep it byte for byte.
#include <bit>
#include <cstddef>
#include <cstdint>

namespace SASM {

static_assert(std::endian::native == std::endian::little, "the header words are little-endian on the wire");

struct LcdSegment {
  static constexpr size_t kMessageAreaSize = 40960;
  static constexpr size_t kConnectionListSize = 23552;

  uint32_t layoutVersion;  // 1; any other value marks a layout we must not touch
  uint32_t secondMark;     // written on initialisation, never read
  uint32_t messageTime;    // tick of the posted message; 0 after a clear
  uint32_t messageSize;    // 0 while the slot is free
  uint8_t messageArea[kMessageAreaSize];
  // NUL-terminated strings up to the first empty one.
  uint8_t connectionList[kConnectionListSize];
};

// The segment proper.
inline constexpr size_t kLcdSegmentSize = 0xFC10;
// An add at the end of the list may write this many bytes past connectionList,
// and so past the segment; other writers rely on the same bound.
inline constexpr size_t kLcdListOverrun = 5;
// What an accessor may touch: any block given to AttachSegment must own this much.
inline constexpr size_t kLcdBlockSize = kLcdSegmentSize + kLcdListOverrun;
// The platform maps whole pages, which is what makes the overrun land in the view.
inline constexpr size_t kLcdMappedSize = 0x10000;

static_assert(sizeof(LcdSegment) == kLcdSegmentSize);
static_assert(alignof(LcdSegment) == 4);
static_assert(offsetof(LcdSegment, layoutVersion) == 0);
static_assert(offsetof(LcdSegment, secondMark) == 4);
static_assert(offsetof(LcdSegment, messageTime) == 8);
static_assert(offsetof(LcdSegment, messageSize) == 12);
static_assert(offsetof(LcdSegment, messageArea) == 16);
static_assert(offsetof(LcdSegment, connectionList) == 0xA010);
static_assert(kLcdBlockSize <= kLcdMappedSize);

}  // namespace SASM
