#include "tests/fakes/FakeProcesses.h"

#include <algorithm>

namespace SASM {

bool FakeProcesses::EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) {
  lastMaxCount_ = maxCount;
  if (listFails_) return false;
  for (const Process& process : table_) {
    if (ids.size() >= maxCount) break;
    ids.push_back(process.id);
  }
  return true;
}

int32_t FakeProcesses::GetImageBaseName(uint32_t processId, std::u16string& name) {
  for (const Process& process : table_) {
    if (process.id != processId) continue;
    if (process.image.empty()) return 5;  // access denied
    name = process.image;
    return 0;
  }
  return 87;  // no such process
}

int32_t FakeProcesses::StartAsUserOf(uint32_t processId, std::u16string_view commandLine) {
  if (std::find(startFailures_.begin(), startFailures_.end(), processId) != startFailures_.end()) return 1314;
  starts_.push_back({processId, std::u16string(commandLine)});
  return 0;
}

}  // namespace SASM
