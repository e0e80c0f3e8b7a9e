#pragma once
#include "engine/Platform.h"

namespace SASM {

class Dinput8DllHelper;
class Kernel32DllHelper;
class SrpapiDllHelper;

// The process-wide real seams; built on first use and kept until unload.
// Building them also builds the process-wide run-time helpers below.
const Platform& Win32Platform();

// Run-time helpers the whole process shares, destroyed at unload.
Kernel32DllHelper& ProcessKernel32DllHelper();
Dinput8DllHelper& ProcessDinput8DllHelper();
SrpapiDllHelper& ProcessSrpapiDllHelper();

}  // namespace SASM
