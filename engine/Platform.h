#pragma once
// The seams the engine runs on: the real ones in the module, fakes in tests.
#include "engine/IAccessControl.h"
#include "engine/IFileSystem.h"
#include "engine/IModuleLoader.h"
#include "engine/IProcessLauncher.h"
#include "engine/IProcesses.h"
#include "engine/IRegistry.h"
#include "engine/IServiceManager.h"
#include "engine/ISystem.h"
#include "engine/ITaskScheduler.h"
#include "engine/ITerminalSessions.h"

namespace SASM {

struct Platform {
  IRegistry* registry;
  IFileSystem* files;
  ISystem* system;
  // Installation's seams; a platform built without them makes those steps fail.
  IModuleLoader* modules = nullptr;
  IProcesses* processes = nullptr;
  IAccessControl* access = nullptr;
  // Removal's seams; without them services count as absent, commands and tasks fail.
  IServiceManager* services = nullptr;
  IProcessLauncher* launcher = nullptr;
  ITerminalSessions* sessions = nullptr;
  ITaskScheduler* scheduler = nullptr;
};

}  // namespace SASM
