#pragma once
// The preference family's small services over the real system.
#include "broker/PrefPlatform.h"

namespace SASM {

class Win32PrefPlatform : public PrefPlatform {
 public:
  uint32_t GetScreenSaveTimeout() override;
  void SetScreenSaveTimeout(uint32_t seconds) override;
  uint32_t CountGameControllers() override;
  int32_t QueryVolume(const char16_t* root, bool& bound) override;
  bool FromSystemCodePage(std::string_view narrow, std::u16string& wide) override;
  bool ToSystemCodePage(std::u16string_view wide, std::string& narrow) override;
};

}  // namespace SASM
