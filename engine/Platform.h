#pragma once
// The seams the engine runs on: the real ones in the module, fakes in tests.
#include "engine/IFileSystem.h"
#include "engine/IRegistry.h"
#include "engine/ISystem.h"

namespace SASM {

struct Platform {
  IRegistry* registry;
  IFileSystem* files;
  ISystem* system;
};

}  // namespace SASM
