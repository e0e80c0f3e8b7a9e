#pragma once
#include "engine/IAccessControl.h"

namespace SASM {

// Access lists through the security functions of "advapi32.dll", bound for each
// task by a helper built on the stack and freed at its end.
class Win32AccessControl : public IAccessControl {
 public:
  int32_t EnsureAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) override;
  int32_t RemoveAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) override;
};

}  // namespace SASM
