#pragma once
// Owns a library loaded through the module-loading seam.
#include "engine/IModuleLoader.h"

namespace SASM {

class ScopedModule {
 public:
  explicit ScopedModule(IModuleLoader& loader) : loader_(loader) {}
  ScopedModule(const ScopedModule&) = delete;
  ScopedModule& operator=(const ScopedModule&) = delete;
  ~ScopedModule() { reset(); }

  int32_t Load(std::u16string_view path) {
    reset();
    int32_t error = loader_.Load(path, module_);
    loaded_ = error == 0;
    return error;
  }
  ModuleId get() const { return module_; }
  void reset() {
    if (loaded_) loader_.Free(module_);
    loaded_ = false;
  }

 private:
  IModuleLoader& loader_;
  ModuleId module_ = 0;
  bool loaded_ = false;
};

}  // namespace SASM
