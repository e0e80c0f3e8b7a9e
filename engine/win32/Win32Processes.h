#pragma once
#include "engine/IProcesses.h"

namespace SASM {

// Processes through the process-status functions and the tokens of running processes.
class Win32Processes : public IProcesses {
 public:
  bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) override;
  int32_t GetImageBaseName(uint32_t processId, std::u16string& name) override;
  int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) override;
};

}  // namespace SASM
