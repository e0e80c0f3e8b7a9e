#pragma once
#include "engine/IProcessLauncher.h"

namespace SASM {

// Commands through CreateProcessW and ShellExecuteExW, waited for on their process handles.
class Win32ProcessLauncher : public IProcessLauncher {
 public:
  int32_t RunAndWait(std::u16string_view commandLine, uint32_t creationFlags, uint32_t timeoutMs,
                     uint32_t& exitCode) override;
  bool ShellExecuteAndWait(std::u16string_view file, std::u16string_view parameters) override;
};

}  // namespace SASM
