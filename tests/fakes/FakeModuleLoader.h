#pragma once
// Libraries from a table for native tests: each has named entries whose calls
// answer scripted results, the last one repeating. Every step is logged.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IModuleLoader.h"

namespace SASM {

class FakeModuleLoader : public IModuleLoader {
 public:
  void AddModule(std::u16string_view path, std::map<std::string, std::vector<int32_t>> entries);

  // "Load <path>", "Find <name>", "Call <name> -> <hex result>", "Free <path>", in order.
  const std::vector<std::string>& Log() const { return log_; }
  size_t LoadedCount() const { return loaded_.size(); }

  int32_t Load(std::u16string_view path, ModuleId& module) override;
  void Free(ModuleId module) override;
  int32_t FindEntry(ModuleId module, const char* name, ModuleEntryId& entry) override;
  int32_t CallEntry(ModuleEntryId entry) override;

 private:
  struct Entry {
    std::string name;
    std::vector<int32_t> results;
    size_t calls = 0;
  };
  struct Module {
    std::u16string path;
    std::map<std::string, size_t> entries;  // name to index in entries_
  };

  std::map<std::u16string, Module> modules_;
  std::vector<Entry> entries_;
  std::map<ModuleId, std::u16string> loaded_;
  ModuleId nextModule_ = 0x1000;
  std::vector<std::string> log_;
};

}  // namespace SASM
