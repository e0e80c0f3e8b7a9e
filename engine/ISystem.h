#pragma once
// Seam for system facts and services: shell folders, system directories,
// version, clock, resources, code page, shell execution and processes.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

namespace Csidl {
constexpr int32_t kDesktop = 16;
constexpr int32_t kAppData = 26;       // roaming
constexpr int32_t kLocalAppData = 28;
constexpr int32_t kWindows = 36;
constexpr int32_t kSystem = 37;
constexpr int32_t kProgramFiles = 38;
constexpr int32_t kFlagCreate = 32768;
}  // namespace Csidl

class ISystem {
 public:
  virtual ~ISystem() = default;
  // False when the shell's folder function is missing or fails.
  virtual bool GetFolderPath(int32_t csidl, std::u16string& path) = 0;
  virtual bool GetSystemDirectory(std::u16string& path) = 0;
  // False when the platform has no 32-bit system directory of its own.
  virtual bool GetSystemWow64Directory(std::u16string& path) = 0;
  virtual bool IsWow64Process() = 0;
  virtual uint32_t WindowsMajorVersion() = 0;
  virtual uint32_t TickCount() = 0;
  virtual void Sleep(uint32_t milliseconds) = 0;
  // The current time as a file time (100 ns units since 1601, UTC); false when it can't be converted.
  virtual bool CurrentFileTime(uint64_t& fileTime) = 0;
  // One draw from the system's random generator; false when the draw failed.
  virtual bool DrawRandom(uint32_t& value) = 0;
  // False when the resource module has no such string.
  virtual bool LoadResourceString(void* module, uint32_t id, std::u16string& text) = 0;
  // ShellExecuteW's instance value: 32 or less is a failure.
  virtual intptr_t ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                                std::u16string_view parameters) = 0;
  // Starts a command line without waiting; the handles are closed at once.
  virtual int32_t StartProcess(std::u16string_view commandLine) = 0;
  // Ids of every running process; false when the list can't be taken.
  virtual bool EnumerateProcesses(std::vector<uint32_t>& ids) = 0;
  // Narrow text in the system's code page (registry values read narrow), widened.
  virtual std::u16string FromSystemCodePage(std::string_view text) = 0;
};

}  // namespace SASM
