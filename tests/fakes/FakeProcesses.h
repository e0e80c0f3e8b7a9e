#pragma once
// A process table for native tests: ids with image names and paths, the
// modules each has loaded, some that can't be opened, windows and their
// processes, and a record of what was started in whose context and what was
// ended.
#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IProcesses.h"

namespace SASM {

class FakeProcesses : public IProcesses {
 public:
  struct Start {
    uint32_t processId;
    std::u16string commandLine;
    bool operator==(const Start&) const = default;
  };
  struct Ending {
    uint32_t processId;
    uint32_t exitCode;
    bool operator==(const Ending&) const = default;
  };

  // An empty image name stands for a process that can't be opened.
  void Add(uint32_t id, std::u16string image) { table_.push_back({id, image, image, {}, kReadable}); }
  // A process known by its full image path; the name is the part behind the last "\".
  void AddImage(uint32_t id, std::u16string path, std::vector<std::u16string> modules = {});
  // How the process answers for its identity: a process of another width gives its image
  // path only, and one that gives nothing still counts as opened.
  void SetIdentitySource(uint32_t id, IdentitySource source) {
    if (Process* process = Find(id)) process->source = source;
  }
  void FailList() { listResult_ = ListResult::kFailed; }
  void FailStartFor(uint32_t id) { startFailures_.push_back(id); }
  void AddWindow(void* window, uint32_t processId) { windows_[window] = processId; }

  const std::vector<Start>& Starts() const { return starts_; }
  const std::vector<Ending>& Endings() const { return endings_; }
  // Processes whose modules were listed, in order; each stands for a handle left open.
  const std::vector<uint32_t>& ModuleScans() const { return moduleScans_; }
  uint32_t LastMaxCount() const { return lastMaxCount_; }
  uint32_t LastTableBytes() const { return lastTableBytes_; }

  bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) override;
  int32_t GetImageBaseName(uint32_t processId, std::u16string& name) override;
  int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) override {
    if (std::find(startFailures_.begin(), startFailures_.end(), processId) != startFailures_.end()) return 1314;
    starts_.push_back({processId, std::u16string(commandLine)});
    return 0;
  }
  ListResult ListProcessIds(uint32_t tableBytes, std::vector<uint32_t>& ids) override;
  IdentitySource ReadIdentity(uint32_t processId, std::u16string& name, std::u16string& path) override;
  bool ListModulePaths(uint32_t processId, std::vector<std::u16string>& paths) override;
  bool Terminate(uint32_t processId, uint32_t exitCode) override {
    if (!Find(processId)) return false;
    endings_.push_back({processId, exitCode});
    return true;
  }
  uint32_t GetWindowProcessId(void* window) override {
    auto found = windows_.find(window);
    return found == windows_.end() ? 0 : found->second;
  }

 private:
  static constexpr IdentitySource kReadable = IdentitySource::kFirstModule;
  struct Process {
    uint32_t id;
    std::u16string image;
    std::u16string path;
    std::vector<std::u16string> modules;
    IdentitySource source;
  };
  Process* Find(uint32_t id) {
    for (Process& process : table_) {
      if (process.id == id) return &process;
    }
    return nullptr;
  }

  std::vector<Process> table_;
  std::map<void*, uint32_t> windows_;
  std::vector<uint32_t> startFailures_;
  std::vector<Start> starts_;
  std::vector<Ending> endings_;
  std::vector<uint32_t> moduleScans_;
  ListResult listResult_ = ListResult::kListed;
  uint32_t lastMaxCount_ = 0;
  uint32_t lastTableBytes_ = 0;
};

}  // namespace SASM
