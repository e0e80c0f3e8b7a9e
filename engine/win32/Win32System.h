#pragma once
#include "engine/ISystem.h"

namespace SASM {

class Win32System : public ISystem {
 public:
  bool GetFolderPath(int32_t csidl, std::u16string& path) override;
  bool GetSystemDirectory(std::u16string& path) override;
  bool GetSystemWow64Directory(std::u16string& path) override;
  bool IsWow64Process() override;
  uint32_t WindowsMajorVersion() override;
  uint32_t TickCount() override;
  void Sleep(uint32_t milliseconds) override;
  bool CurrentFileTime(uint64_t& fileTime) override;
  bool DrawRandom(uint32_t& value) override;
  bool LoadResourceString(void* module, uint32_t id, std::u16string& text) override;
  intptr_t ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                        std::u16string_view parameters) override;
  int32_t StartProcess(std::u16string_view commandLine) override;
  bool EnumerateProcesses(std::vector<uint32_t>& ids) override;
  std::u16string FromSystemCodePage(std::string_view text) override;
};

}  // namespace SASM
