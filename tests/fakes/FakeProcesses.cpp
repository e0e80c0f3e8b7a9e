#include "tests/fakes/FakeProcesses.h"

#include <algorithm>

namespace SASM {

void FakeProcesses::AddImage(uint32_t id, std::u16string path, std::vector<std::u16string> modules) {
  size_t slash = path.rfind(u'\\');
  std::u16string name = slash == std::u16string::npos ? path : path.substr(slash + 1);
  table_.push_back({id, std::move(name), std::move(path), std::move(modules), kReadable});
}

bool FakeProcesses::EnumerateProcesses(uint32_t maxCount, std::vector<uint32_t>& ids) {
  lastMaxCount_ = maxCount;
  if (listResult_ != ListResult::kListed) return false;
  for (const Process& process : table_) {
    if (ids.size() >= maxCount) break;
    ids.push_back(process.id);
  }
  return true;
}

int32_t FakeProcesses::GetImageBaseName(uint32_t processId, std::u16string& name) {
  Process* process = Find(processId);
  if (!process) return 87;               // no such process
  if (process->image.empty()) return 5;  // access denied
  name = process->image;
  return 0;
}

IProcesses::ListResult FakeProcesses::ListProcessIds(uint32_t tableBytes, std::vector<uint32_t>& ids) {
  lastTableBytes_ = tableBytes;
  if (listResult_ != ListResult::kListed) return listResult_;
  for (const Process& process : table_) {
    if (ids.size() >= tableBytes / 4) break;
    ids.push_back(process.id);
  }
  return ListResult::kListed;
}

IProcesses::IdentitySource FakeProcesses::ReadIdentity(uint32_t processId, std::u16string& name, std::u16string& path) {
  Process* process = Find(processId);
  if (!process || process->image.empty()) return IdentitySource::kNotOpened;
  if (process->source == IdentitySource::kFirstModule) name = process->image;
  if (process->source == IdentitySource::kFirstModule || process->source == IdentitySource::kImageName)
    path = process->path;
  return process->source;
}

bool FakeProcesses::ListModulePaths(uint32_t processId, std::vector<std::u16string>& paths) {
  Process* process = Find(processId);
  if (!process || process->image.empty()) return false;
  moduleScans_.push_back(processId);
  if (process->source != IdentitySource::kFirstModule) return false;
  paths.insert(paths.end(), process->modules.begin(), process->modules.end());
  return true;
}

}  // namespace SASM
