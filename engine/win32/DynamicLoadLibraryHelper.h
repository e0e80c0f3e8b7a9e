#pragma once
// One system library, loaded by full path from the system directory, and a
// table of its functions found by name. `available` drops to 0 when the
// library or a function marked required is missing; callers test it or the
// function they need.
#include "engine/win32/WindowsApi.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace SASM {

struct DllFunction {
  const char* name;
  bool required;
};

// Position of a name in a helper's table, found while compiling: a name that
// isn't in the table doesn't build.
template <size_t N>
consteval size_t DllFunctionIndex(const DllFunction (&table)[N], std::string_view name) {
  for (size_t i = 0; i < N; ++i) {
    if (name == table[i].name) return i;
  }
  throw "function is not in this helper's table";
}

class DynamicLoadLibraryHelper {
 public:
  DynamicLoadLibraryHelper(const char* libraryName, bool libraryRequired, bool bitnessFlag);
  DynamicLoadLibraryHelper(const DynamicLoadLibraryHelper&) = delete;
  DynamicLoadLibraryHelper& operator=(const DynamicLoadLibraryHelper&) = delete;
  virtual ~DynamicLoadLibraryHelper();

  // The function's address, or null. A required one that is missing clears `available`.
  FARPROC Resolve(const char* name, bool required);

  HMODULE library() const { return library_; }
  uint8_t available() const { return available_; }

 protected:
  // Every entry is null first, then each is resolved in the table's order.
  template <size_t N>
  void ResolveTable(const DllFunction (&table)[N], FARPROC (&functions)[N]) {
    for (FARPROC& function : functions) function = nullptr;
    for (size_t i = 0; i < N; ++i) functions[i] = Resolve(table[i].name, table[i].required);
  }

  template <typename Signature>
  static Signature As(FARPROC address) {
    return reinterpret_cast<Signature>(reinterpret_cast<void*>(address));
  }

 private:
  bool HasLibrary() const { return library_ != nullptr && library_ != INVALID_HANDLE_VALUE; }

  HMODULE library_ = nullptr;
  uint8_t available_ = 1;
};

// A helper whose functions are one table, resolved in the table's order when
// it is built. Derived helpers add one typed getter per entry.
template <const auto& Table>
class DllFunctionTable : public DynamicLoadLibraryHelper {
 public:
  // In resolving order; false marks a function whose absence leaves the helper available.
  static constexpr const auto& kFunctions = Table;

  // Entries by table position, null when the function wasn't found.
  FARPROC Function(size_t index) const { return functions_[index]; }

 protected:
  DllFunctionTable(const char* libraryName, bool libraryRequired)
      : DynamicLoadLibraryHelper(libraryName, libraryRequired, false) {
    ResolveTable(Table, functions_);
  }

  template <typename Signature>
  Signature Entry(size_t index) const {
    return As<Signature>(functions_[index]);
  }

 private:
  FARPROC functions_[std::size(Table)];
};

}  // namespace SASM
