#pragma once
// The seams the engine runs on: the real ones in the module, fakes in tests.
#include "engine/IAccessControl.h"
#include "engine/IFileSystem.h"
#include "engine/IModuleLoader.h"
#include "engine/IProcesses.h"
#include "engine/IRegistry.h"
#include "engine/ISystem.h"

namespace SASM {

struct Platform {
  IRegistry* registry;
  IFileSystem* files;
  ISystem* system;
  // Installation's seams; a platform built without them makes those steps fail.
  IModuleLoader* modules = nullptr;
  IProcesses* processes = nullptr;
  IAccessControl* access = nullptr;
};

}  // namespace SASM
