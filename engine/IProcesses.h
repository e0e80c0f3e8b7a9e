#pragma once
// Process seam: what runs, under which image, and starting a command in the
// user context of a running process. Errors are the platform's numbers.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

class IProcesses {
 public:
  virtual ~IProcesses() = default;
  // At most maxCount ids; false when the list can't be taken.
  virtual bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) = 0;
  // File name of the process's main image, without its directory.
  virtual int32_t GetImageBaseName(uint32_t processId, std::u16string& name) = 0;
  // Starts the command line detached, under a primary token made from the process's own.
  virtual int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) = 0;
};

}  // namespace SASM
