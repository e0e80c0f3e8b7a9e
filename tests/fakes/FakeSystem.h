#pragma once
// System facts from tables for native tests: shell folders by CSIDL (a folder
// that isn't set fails, as a missing shell function does), system directories,
// a settable clock, and logs of what was started or opened.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ISystem.h"

namespace SASM {

class FakeSystem : public ISystem {
 public:
  struct Execution {
    std::u16string verb;
    std::u16string file;
    std::u16string parameters;
  };

  // The create flag (32768) finds the same folder; FolderRequests() shows what was asked.
  void SetFolder(int32_t csidl, std::u16string path) { folders_[csidl] = std::move(path); }
  void RemoveFolder(int32_t csidl) { folders_.erase(csidl); }
  // An empty text means the platform has no WOW64 directory.
  void SetSystemWow64Directory(std::u16string path) { wow64Directory_ = std::move(path); }
  void SetWow64Process(bool wow64) { wow64Process_ = wow64; }
  void SetMajorVersion(uint32_t major) { majorVersion_ = major; }
  // Each reading of the clock moves it on by this much.
  void SetTickStep(uint32_t step) { tickStep_ = step; }
  // The file time the clock answers; 0 makes the conversion fail.
  void SetFileTime(uint64_t fileTime) { fileTime_ = fileTime; }
  // Draws answered in order; when they run out every draw fails.
  void SetRandomDraws(std::vector<uint32_t> draws) { draws_ = std::move(draws); }
  void SetResourceString(uint32_t id, std::u16string text) { strings_[id] = std::move(text); }
  // The module the last string was asked from.
  void* LastStringModule() const { return lastStringModule_; }
  // Shell executions answer these in order, then 42.
  void SetShellExecuteResults(std::vector<intptr_t> results) { shellExecuteResults_ = std::move(results); }

  const std::vector<int32_t>& FolderRequests() const { return folderRequests_; }
  const std::vector<Execution>& Executions() const { return executions_; }
  const std::vector<std::u16string>& StartedProcesses() const { return started_; }
  // Every sleep, in order; each moves the clock on by its length.
  const std::vector<uint32_t>& Sleeps() const { return sleeps_; }

  bool GetFolderPath(int32_t csidl, std::u16string& path) override;
  bool GetSystemDirectory(std::u16string& path) override { return Give(systemDirectory_, path); }
  bool GetSystemWow64Directory(std::u16string& path) override { return Give(wow64Directory_, path); }
  bool IsWow64Process() override { return wow64Process_; }
  uint32_t WindowsMajorVersion() override { return majorVersion_; }
  uint32_t TickCount() override {
    ticks_ += tickStep_;
    return ticks_ - tickStep_;
  }
  void Sleep(uint32_t milliseconds) override {
    sleeps_.push_back(milliseconds);
    ticks_ += milliseconds;
  }
  bool CurrentFileTime(uint64_t& fileTime) override {
    if (fileTime_ != 0) fileTime = fileTime_;
    return fileTime_ != 0;
  }
  bool DrawRandom(uint32_t& value) override {
    if (nextDraw_ >= draws_.size()) return false;
    value = draws_[nextDraw_++];
    return true;
  }
  bool LoadResourceString(void* module, uint32_t id, std::u16string& text) override;
  intptr_t ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                        std::u16string_view parameters) override;
  int32_t StartProcess(std::u16string_view commandLine) override {
    started_.emplace_back(commandLine);
    return 0;
  }
  // Process lists come through the processes seam in these tests.
  bool EnumerateProcesses(std::vector<uint32_t>&) override { return false; }
  // The fake's system code page is Latin-1.
  std::u16string FromSystemCodePage(std::string_view text) override;

 private:
  // A directory that isn't set fails, as the platform's call does.
  static bool Give(const std::u16string& directory, std::u16string& path) {
    if (!directory.empty()) path = directory;
    return !directory.empty();
  }

  std::map<int32_t, std::u16string> folders_;
  std::u16string systemDirectory_ = u"C:\\Windows\\system32";
  std::u16string wow64Directory_;
  bool wow64Process_ = false;
  uint32_t majorVersion_ = 10;
  uint32_t ticks_ = 1000;
  uint32_t tickStep_ = 0;
  uint64_t fileTime_ = 133500000000000000ull;  // early 2024
  std::vector<uint32_t> draws_;
  size_t nextDraw_ = 0;
  std::vector<uint32_t> sleeps_;
  std::map<uint32_t, std::u16string> strings_;
  void* lastStringModule_ = nullptr;
  std::vector<intptr_t> shellExecuteResults_;
  std::vector<int32_t> folderRequests_;
  std::vector<Execution> executions_;
  std::vector<std::u16string> started_;
};

}  // namespace SASM
