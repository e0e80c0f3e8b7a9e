#pragma once
// The preference family's small services from fields: the screensaver's
// time-out with every write kept, a controller count, and the volumes that
// answer. The code page is Latin-1; anything beyond it doesn't convert.
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "broker/PrefPlatform.h"

namespace SASM {

class FakePrefPlatform : public PrefPlatform {
 public:
  uint32_t screenSaveTimeout = 0;
  std::vector<uint32_t> timeoutWrites;
  uint32_t controllers = 0;
  // Roots that answer, as they are asked for; volumeFunctionMissing stands for a helper that found no function.
  std::set<std::u16string> volumes;
  bool volumeFunctionMissing = false;
  std::vector<std::u16string> volumeQueries;

  uint32_t GetScreenSaveTimeout() override { return screenSaveTimeout; }
  void SetScreenSaveTimeout(uint32_t seconds) override {
    timeoutWrites.push_back(seconds);
    screenSaveTimeout = seconds;
  }
  uint32_t CountGameControllers() override { return controllers; }
  int32_t QueryVolume(const char16_t* root, bool& bound) override {
    bound = !volumeFunctionMissing;
    if (!bound) return 0;
    volumeQueries.push_back(root);
    return volumes.count(root) ? 1 : 0;
  }
  bool FromSystemCodePage(std::string_view narrow, std::u16string& wide) override {
    wide.clear();
    for (char c : narrow) wide.push_back(static_cast<unsigned char>(c));
    return true;
  }
  bool ToSystemCodePage(std::u16string_view wide, std::string& narrow) override {
    narrow.clear();
    for (char16_t unit : wide) {
      if (unit > 0xFF) return false;
      narrow.push_back(static_cast<char>(unit));
    }
    return true;
  }
};

}  // namespace SASM
