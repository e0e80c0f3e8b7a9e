#include "tests/fakes/FakeSystem.h"

namespace SASM {

bool FakeSystem::GetFolderPath(int32_t csidl, std::u16string& path) {
  folderRequests_.push_back(csidl);
  auto found = folders_.find(csidl & ~Csidl::kFlagCreate);
  if (found == folders_.end()) return false;
  path = found->second;
  return true;
}

bool FakeSystem::LoadResourceString(void* module, uint32_t id, std::u16string& text) {
  lastStringModule_ = module;
  auto found = strings_.find(id);
  if (found == strings_.end()) return false;
  text = found->second;
  return true;
}

intptr_t FakeSystem::ShellExecute(void*, std::u16string_view verb, std::u16string_view file,
                                  std::u16string_view parameters) {
  size_t call = executions_.size();
  executions_.push_back({std::u16string(verb), std::u16string(file), std::u16string(parameters)});
  return call < shellExecuteResults_.size() ? shellExecuteResults_[call] : 42;
}

std::u16string FakeSystem::FromSystemCodePage(std::string_view text) {
  std::u16string wide;
  for (char c : text) wide.push_back(static_cast<unsigned char>(c));
  return wide;
}

}  // namespace SASM
