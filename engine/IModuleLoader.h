#pragma once
// Module-loading seam: a library loaded by its path and the self-registration
// entries it exports. Results are the platform's error numbers (0 success).
#include <cstdint>
#include <string_view>

namespace SASM {

using ModuleId = uint64_t;
using ModuleEntryId = uint64_t;

namespace ModuleError {
constexpr int32_t kModuleNotFound = 126;
constexpr int32_t kProcedureNotFound = 127;
}  // namespace ModuleError

class IModuleLoader {
 public:
  virtual ~IModuleLoader() = default;
  // The library's own directory is searched for what it needs.
  virtual int32_t Load(std::u16string_view path, ModuleId& module) = 0;
  virtual void Free(ModuleId module) = 0;
  virtual int32_t FindEntry(ModuleId module, const char* name, ModuleEntryId& entry) = 0;
  // Calls an entry that takes nothing and answers an HRESULT, as DllRegisterServer does.
  virtual int32_t CallEntry(ModuleEntryId entry) = 0;
};

}  // namespace SASM
