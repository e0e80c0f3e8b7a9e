#pragma once
// Skin images from the module's resources: a TGA resource decoded into a
// bottom-up 32-bit DIB section, selected into its own memory context.
#include <cstdint>

#include "engine/win32/WindowsApi.h"
#include "ui/IWindowSystem.h"

namespace SASM {

class HostCallbacks;

class Win32ImageLoader {
 public:
  struct Image {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ original = nullptr;
  };

  // A compressed image resource starts with its unpacked size, 32-bit little-endian.
  static constexpr uint32_t kMaxUnpackedSize = 64u << 20;

  // False, with image untouched, when the resource is missing or cannot be read.
  static bool Load(HMODULE module, HostCallbacks* host, ImageForm form, int32_t id, Image& image);
  static void Free(Image& image);
};

}  // namespace SASM
