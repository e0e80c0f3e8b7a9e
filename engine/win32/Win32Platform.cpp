#include "engine/win32/Win32Platform.h"

#include "engine/win32/Win32FileSystem.h"
#include "engine/win32/Win32Registry.h"
#include "engine/win32/Win32System.h"

namespace SASM {

const Platform& Win32Platform() {
  static Win32Registry registry;
  static Win32FileSystem files;
  static Win32System system;
  static const Platform platform{&registry, &files, &system};
  return platform;
}

}  // namespace SASM
