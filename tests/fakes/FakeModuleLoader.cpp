#include "tests/fakes/FakeModuleLoader.h"

#include <algorithm>
#include <cstdio>

#include "engine/MString.h"

namespace SASM {
namespace {

std::string Utf8(std::u16string_view text) { return MString(text).ToUtf8(); }

}  // namespace

void FakeModuleLoader::AddModule(std::u16string_view path, std::map<std::string, std::vector<int32_t>> entries) {
  Module module{std::u16string(path), {}};
  for (auto& [name, results] : entries) {
    module.entries[name] = entries_.size();
    entries_.push_back(Entry{name, std::move(results)});
  }
  modules_[std::u16string(path)] = std::move(module);
}

int32_t FakeModuleLoader::Load(std::u16string_view path, ModuleId& module) {
  log_.push_back("Load " + Utf8(path));
  std::u16string key(path);
  if (!modules_.count(key)) return ModuleError::kModuleNotFound;
  module = nextModule_++;
  loaded_[module] = key;
  return 0;
}

void FakeModuleLoader::Free(ModuleId module) {
  auto found = loaded_.find(module);
  log_.push_back("Free " + (found == loaded_.end() ? std::string("?") : Utf8(found->second)));
  if (found != loaded_.end()) loaded_.erase(found);
}

int32_t FakeModuleLoader::FindEntry(ModuleId module, const char* name, ModuleEntryId& entry) {
  log_.push_back(std::string("Find ") + name);
  auto found = loaded_.find(module);
  if (found == loaded_.end()) return 6;  // invalid handle
  const Module& loaded = modules_[found->second];
  auto named = loaded.entries.find(name);
  if (named == loaded.entries.end()) return ModuleError::kProcedureNotFound;
  entry = named->second + 1;
  return 0;
}

int32_t FakeModuleLoader::CallEntry(ModuleEntryId id) {
  Entry& entry = entries_.at(id - 1);
  int32_t result = entry.results.empty() ? 0 : entry.results[std::min(entry.calls, entry.results.size() - 1)];
  ++entry.calls;
  char hex[16];
  std::snprintf(hex, sizeof(hex), "%X", static_cast<uint32_t>(result));
  log_.push_back("Call " + entry.name + " -> " + hex);
  return result;
}

}  // namespace SASM
