#include "tests/fakes/FakeSystem.h"

namespace SASM {

bool FakeSystem::GetFolderPath(int32_t csidl, std::u16string& path) {
  folderRequests_.push_back(csidl);
  auto found = folders_.find(csidl & ~Csidl::kFlagCreate);
  if (found == folders_.end()) return false;
  path = found->second;
  return true;
}

bool FakeSystem::GetSystemDirectory(std::u16string& path) {
  if (systemDirectory_.empty()) return false;
  path = systemDirectory_;
  return true;
}

bool FakeSystem::GetSystemWow64Directory(std::u16string& path) {
  if (wow64Directory_.empty()) return false;
  path = wow64Directory_;
  return true;
}

uint32_t FakeSystem::TickCount() {
  uint32_t now = ticks_;
  ticks_ += tickStep_;
  return now;
}

void FakeSystem::Sleep(uint32_t milliseconds) {
  sleeps_.push_back(milliseconds);
  ticks_ += milliseconds;
}

bool FakeSystem::CurrentFileTime(uint64_t& fileTime) {
  if (fileTime_ == 0) return false;
  fileTime = fileTime_;
  return true;
}

bool FakeSystem::DrawRandom(uint32_t& value) {
  if (nextDraw_ >= draws_.size()) return false;
  value = draws_[nextDraw_++];
  return true;
}

bool FakeSystem::LoadResourceString(void*, uint32_t id, std::u16string& text) {
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

int32_t FakeSystem::StartProcess(std::u16string_view commandLine) {
  started_.emplace_back(commandLine);
  return 0;
}

std::u16string FakeSystem::FromSystemCodePage(std::string_view text) {
  std::u16string wide;
  for (char c : text) wide.push_back(static_cast<unsigned char>(c));
  return wide;
}

}  // namespace SASM
