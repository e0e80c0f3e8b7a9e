#include "engine/win32/Win32ModuleLoader.h"

#include "engine/win32/WindowsApi.h"

#include "engine/win32/WideText.h"

namespace SASM {
namespace {

HMODULE ToModule(ModuleId id) { return reinterpret_cast<HMODULE>(static_cast<uintptr_t>(id)); }

}  // namespace

int32_t Win32ModuleLoader::Load(std::u16string_view path, ModuleId& module) {
  HMODULE library = LoadLibraryExW(ToWide(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!library) return static_cast<int32_t>(GetLastError());
  module = static_cast<ModuleId>(reinterpret_cast<uintptr_t>(library));
  return ERROR_SUCCESS;
}

void Win32ModuleLoader::Free(ModuleId module) { FreeLibrary(ToModule(module)); }

int32_t Win32ModuleLoader::FindEntry(ModuleId module, const char* name, ModuleEntryId& entry) {
  FARPROC address = GetProcAddress(ToModule(module), name);
  if (!address) return static_cast<int32_t>(GetLastError());
  entry = static_cast<ModuleEntryId>(reinterpret_cast<uintptr_t>(address));
  return ERROR_SUCCESS;
}

int32_t Win32ModuleLoader::CallEntry(ModuleEntryId entry) {
  using SelfRegistration = HRESULT(STDAPICALLTYPE*)();
  auto call = reinterpret_cast<SelfRegistration>(static_cast<uintptr_t>(entry));
  return static_cast<int32_t>(call());
}

}  // namespace SASM
