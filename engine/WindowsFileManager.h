#pragma once
// The file manager's paths and its one setting. Paths on this interface are
// UTF-8; the few it computes are process values, filled once and then kept.
#include <cstdint>
#include <string>

#include "engine/Platform.h"

namespace SASM {

class WindowsFileManager {
 public:
  // Reads "EnableLocalAppData" from hms.cfg once, here.
  explicit WindowsFileManager(const Platform& platform);

  bool EnableLocalAppData() const { return enableLocalAppData_ != 0; }
  std::string GetPathSeparator() const { return "\\"; }
  // Empty when the location can't be found; a later call then tries again.
  std::string GetAssetCachePath();
  std::string GetCacheDirectoryPath();
  std::string GetPlayerDataPath();
  std::string GetPrivateDataPath();
  // Where hms.cfg is read from.
  std::string GetConfigFilePath();

  // Empties the process values, as a fresh process has them.
  static void ForgetProcessValues();

 private:
  Platform platform_;
  uint8_t enableLocalAppData_ = 0;
};

}  // namespace SASM
