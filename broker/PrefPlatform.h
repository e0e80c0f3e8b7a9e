#pragma once
// What the preference family's small services ask of the system. Each
// operation is one platform facility with its conventions kept, so a fake can
// answer from fields.
#include <cstdint>
#include <string>
#include <string_view>

namespace SASM {

class PrefPlatform {
 public:
  virtual ~PrefPlatform() = default;

  // SystemParametersInfoW action 14: the screensaver's time-out in seconds, 0 when there is none or the call fails.
  virtual uint32_t GetScreenSaveTimeout() = 0;
  // SystemParametersInfoW action 15; whether it worked isn't asked.
  virtual void SetScreenSaveTimeout(uint32_t seconds) = 0;
  // Attached game controllers counted through DirectInput 8; 0 when DirectInput can't be made.
  virtual uint32_t CountGameControllers() = 0;
  // GetVolumeInformationW on the root with every other argument null or zero: its BOOL result.
  // bound is false, and the result meaningless, when the function can't be found.
  virtual int32_t QueryVolume(const char16_t* root, bool& bound) = 0;
  // Text in the system's code page, both ways; false when it can't be converted.
  virtual bool FromSystemCodePage(std::string_view narrow, std::u16string& wide) = 0;
  virtual bool ToSystemCodePage(std::u16string_view wide, std::string& narrow) = 0;
};

}  // namespace SASM
