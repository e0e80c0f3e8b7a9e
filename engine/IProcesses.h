#pragma once
// Process seam: what runs, under which image, what it has loaded, ending it,
// and starting a command in the user context of a running process. Errors are
// the platform's numbers.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

class IProcesses {
 public:
  // How one call of the process-status listing went.
  enum class ListResult {
    kListed,
    kNoFunction,  // the listing function could not be found: there is nothing to list
    kFailed,      // the system directory or the call itself failed
  };
  // Where a process's name and path came from.
  enum class IdentitySource {
    kNotOpened,    // the process can't be opened for query and read
    kFirstModule,  // name and path of its first module
    kImageName,    // only the full image path: modules can't be listed across processor widths
    kNothing,      // opened, but neither answered
  };

  virtual ~IProcesses() = default;
  // At most maxCount ids; false when the list can't be taken.
  virtual bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) = 0;
  // File name of the process's main image, without its directory.
  virtual int32_t GetImageBaseName(uint32_t processId, std::u16string& name) = 0;
  // Starts the command line detached, under a primary token made from the process's own.
  virtual int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) = 0;

  // One listing call through the process-status library, given a table of tableBytes
  // bytes: the ids are the bytes returned divided by 4.
  virtual ListResult ListProcessIds(uint32_t tableBytes, std::vector<uint32_t>& ids) = 0;
  // Name and path exactly as the platform gives them; path only for kImageName.
  virtual IdentitySource ReadIdentity(uint32_t processId, std::u16string& name, std::u16string& path) = 0;
  // Full paths of the loaded modules, at most 1,024. The process stays open afterwards.
  virtual bool ListModulePaths(uint32_t processId, std::vector<std::u16string>& paths) = 0;
  virtual bool Terminate(uint32_t processId, uint32_t exitCode) = 0;
  // 0 for a null handle, one that is no window, or a window without a process.
  virtual uint32_t GetWindowProcessId(void* window) = 0;
};

}  // namespace SASM
