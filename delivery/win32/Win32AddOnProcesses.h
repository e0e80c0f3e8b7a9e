#pragma once
// Starting, versioning and probing add-on products on the platform.
#include "delivery/IAddOnProcesses.h"
#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/Shell32DllHelper.h"

namespace SASM {

class Win32AddOnProcesses : public IAddOnProcesses {
 public:
  uint32_t Start(std::u16string_view path, const char16_t* parameters) override;
  bool StartElevated(std::u16string_view path) override;
  bool ReadFileVersion(std::u16string_view path, uint32_t& mostSignificant, uint32_t& leastSignificant) override;
  bool MutexExists(const std::string& name) override;

 private:
  Kernel32DllHelper kernel32_;
  Shell32DllHelper shell32_;
};

}  // namespace SASM
