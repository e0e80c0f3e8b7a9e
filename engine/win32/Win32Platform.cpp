#include "engine/win32/Win32Platform.h"

#include "engine/win32/Dinput8DllHelper.h"
#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/SrpapiDllHelper.h"
#include "engine/win32/Win32AccessControl.h"
#include "engine/win32/Win32FileSystem.h"
#include "engine/win32/Win32ModuleLoader.h"
#include "engine/win32/Win32ProcessLauncher.h"
#include "engine/win32/Win32Processes.h"
#include "engine/win32/Win32Registry.h"
#include "engine/win32/Win32ServiceManager.h"
#include "engine/win32/Win32System.h"
#include "engine/win32/Win32TaskScheduler.h"
#include "engine/win32/Win32TerminalSessions.h"

namespace SASM {

const Platform& Win32Platform() {
  // The helpers come first so that they outlive the seams at unload.
  static const bool helpersBuilt =
      (ProcessKernel32DllHelper(), ProcessDinput8DllHelper(), ProcessSrpapiDllHelper(), true);
  (void)helpersBuilt;
  static Win32Registry registry;
  static Win32FileSystem files;
  static Win32System system;
  static Win32ModuleLoader modules;
  static Win32Processes processes;
  static Win32AccessControl access;
  static Win32ServiceManager services;
  static Win32ProcessLauncher launcher;
  static Win32TerminalSessions sessions;
  static Win32TaskScheduler scheduler;
  static const Platform platform{&registry, &files,    &system,   &modules,   &processes,
                                 &access,   &services, &launcher, &sessions, &scheduler};
  return platform;
}

Kernel32DllHelper& ProcessKernel32DllHelper() {
  static Kernel32DllHelper helper;
  return helper;
}

Dinput8DllHelper& ProcessDinput8DllHelper() {
  static Dinput8DllHelper helper;
  return helper;
}

SrpapiDllHelper& ProcessSrpapiDllHelper() {
  static SrpapiDllHelper helper;
  return helper;
}

}  // namespace SASM
