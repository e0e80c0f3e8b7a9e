#pragma once
#include <memory>

#include "engine/IProcesses.h"

namespace SASM {

class PsapiDllHelper;

// Processes through the process-status functions and the tokens of running processes.
class Win32Processes : public IProcesses {
 public:
  Win32Processes();
  ~Win32Processes() override;

  bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) override;
  int32_t GetImageBaseName(uint32_t processId, std::u16string& name) override;
  int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) override;

  ListResult ListProcessIds(uint32_t tableBytes, std::vector<uint32_t>& ids) override;
  IdentitySource ReadIdentity(uint32_t processId, std::u16string& name, std::u16string& path) override;
  bool ListModulePaths(uint32_t processId, std::vector<std::u16string>& paths) override;
  bool Terminate(uint32_t processId, uint32_t exitCode) override;
  uint32_t GetWindowProcessId(void* window) override;

 private:
  // "psapi.dll" is bound on first use, so a process that never lists pays nothing.
  PsapiDllHelper& Psapi();
  std::unique_ptr<PsapiDllHelper> psapi_;
};

}  // namespace SASM
