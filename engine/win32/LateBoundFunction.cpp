#include "engine/win32/LateBoundFunction.h"

#include "engine/SystemPaths.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"

namespace SASM {

FARPROC LateBoundFunction::Get() {
  if (entry_) return entry_;
  // Never freed: the binding serves the whole process.
  if (!module_) module_ = LoadShellLibrary(library_);
  if (module_) entry_ = GetProcAddress(module_, function_);
  return entry_;
}

HMODULE LateBoundFunction::LoadShellLibrary(const wchar_t* library) {
  if (!library) return nullptr;
  MString path;
  std::u16string name = FromWide(library);
  if (!SystemPaths(Win32Platform()).GetShellLibraryPath(name, path)) return nullptr;
  return LoadLibraryW(ToWide(path.View()).c_str());
}

}  // namespace SASM
