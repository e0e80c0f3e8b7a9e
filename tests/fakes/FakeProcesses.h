#pragma once
// A process table for native tests: ids with image names, some of which can't
// be opened, and a record of what was started in whose context.
#include <cstdint>
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

  // An empty image name stands for a process that can't be opened.
  void Add(uint32_t id, std::u16string image) { table_.push_back({id, std::move(image)}); }
  void FailList() { listFails_ = true; }
  void FailStartFor(uint32_t id) { startFailures_.push_back(id); }

  const std::vector<Start>& Starts() const { return starts_; }
  uint32_t LastMaxCount() const { return lastMaxCount_; }

  bool EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) override;
  int32_t GetImageBaseName(uint32_t processId, std::u16string& name) override;
  int32_t StartAsUserOf(uint32_t processId, std::u16string_view commandLine) override;

 private:
  struct Process {
    uint32_t id;
    std::u16string image;
  };
  std::vector<Process> table_;
  std::vector<uint32_t> startFailures_;
  std::vector<Start> starts_;
  bool listFails_ = false;
  uint32_t lastMaxCount_ = 0;
};

}  // namespace SASM
