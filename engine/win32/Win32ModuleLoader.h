#pragma once
#include "engine/IModuleLoader.h"

namespace SASM {

// Libraries loaded by their full path; their own directory is searched for what they need.
class Win32ModuleLoader : public IModuleLoader {
 public:
  int32_t Load(std::u16string_view path, ModuleId& module) override;
  void Free(ModuleId module) override;
  int32_t FindEntry(ModuleId module, const char* name, ModuleEntryId& entry) override;
  int32_t CallEntry(ModuleEntryId entry) override;
};

}  // namespace SASM
