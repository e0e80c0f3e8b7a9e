#pragma once
#include "engine/Platform.h"

namespace SASM {

// The process-wide real seams; built on first use and kept until unload.
const Platform& Win32Platform();

}  // namespace SASM
