#pragma once
// The preference family: the player's per-user values under one key, the
// update mark, and three small services of the machine. Each method answers
// as the broker interface does; out-arguments are the family's own types and
// the live object converts them.
#include <cstdint>
#include <string>

#include "broker/PrefPlatform.h"
#include "delivery/UpdateMarking.h"
#include "engine/IRegistry.h"

namespace SASM {

class BrokerPrefMethods {
 public:
  static constexpr char16_t kPlayerKey[] = u"Software\\Halcyonics\\LumenPlayer";
  static constexpr char16_t kVersionName[] = u"LumenPlayerVersion";
  static constexpr char16_t kWidthName[] = u"Exception Dialog Width";
  static constexpr char16_t kHeightName[] = u"Exception Dialog Height";
  // KEY_READ to read, KEY_READ | KEY_WRITE to remove the version, KEY_WRITE for the dialog size.
  static constexpr uint32_t kReadAccess = 131097;
  static constexpr uint32_t kDeleteAccess = 131103;
  static constexpr uint32_t kWriteAccess = 131078;

  BrokerPrefMethods(IRegistry& registry, PrefPlatform& platform, UpdateMarking& marking)
      : registry_(registry), platform_(platform), marking_(marking) {}

  // The pending version text, widened from the system code page; the value stays.
  int32_t GetLumenPlayerVersion(std::u16string* text);
  // The same, then the value is removed whatever the read found; only the read decides the result.
  int32_t GetAndDeleteLumenPlayerVersion(std::u16string* text);
  int32_t DeleteLumenPlayerVersion();
  // The height is read only when the width was found; each found value is written out.
  int32_t GetExceptionDialogSize(uint32_t* width, uint32_t* height);
  // The height is written only when the width was.
  int32_t SetExceptionDialogSize(uint32_t width, uint32_t height);
  int32_t MarkAutoUpdaterForRun(const char16_t* xmlFromServer);
  int32_t DelayScreensaver();
  int32_t GetDirectInputCount(uint32_t* count);
  // 0 when the volume answers, 1 when it doesn't; only the drive letter of the argument counts.
  int32_t IsDriveAvailable(const char16_t* rootPathName);

 private:
  bool ReadVersion(std::u16string& text);

  IRegistry& registry_;
  PrefPlatform& platform_;
  UpdateMarking& marking_;
};

}  // namespace SASM
