#include "broker/BrokerPrefMethods.h"

#include "broker/BrokerHresult.h"

namespace SASM {
namespace {
constexpr RegistryHive kUser = RegistryHive::CurrentUser;
constexpr int32_t kOk = BrokerHresult::kOk;
constexpr int32_t kFail = BrokerHresult::kFail;
constexpr int32_t kInvalid = BrokerHresult::kInvalidArgument;
}  // namespace

bool BrokerPrefMethods::ReadVersion(std::u16string& text) {
  std::string narrow;
  text.clear();
  return registry_.ReadNarrowString(kUser, kPlayerKey, kVersionName, narrow, kReadAccess) ==
             RegistryError::kSuccess &&
         platform_.FromSystemCodePage(narrow, text);
}

int32_t BrokerPrefMethods::GetLumenPlayerVersion(std::u16string* text) {
  if (!text) return kInvalid;
  return ReadVersion(*text) ? kOk : kFail;
}

int32_t BrokerPrefMethods::GetAndDeleteLumenPlayerVersion(std::u16string* text) {
  if (!text) return kInvalid;
  const bool read = ReadVersion(*text);
  DeleteLumenPlayerVersion();
  return read ? kOk : kFail;
}

int32_t BrokerPrefMethods::DeleteLumenPlayerVersion() {
  // Blanked before it goes, so that a removal that fails leaves no version behind to act on.
  registry_.BlankValue(kUser, kPlayerKey, kVersionName, kDeleteAccess);
  return registry_.DeleteValue(kUser, kPlayerKey, kVersionName, kDeleteAccess) == RegistryError::kSuccess ? kOk
                                                                                                        : kFail;
}

int32_t BrokerPrefMethods::GetExceptionDialogSize(uint32_t* width, uint32_t* height) {
  if (!width || !height) return kInvalid;
  if (registry_.ReadDword(kUser, kPlayerKey, kWidthName, *width, kReadAccess) != RegistryError::kSuccess) return kFail;
  if (registry_.ReadDword(kUser, kPlayerKey, kHeightName, *height, kReadAccess) != RegistryError::kSuccess)
    return kFail;
  return kOk;
}

int32_t BrokerPrefMethods::SetExceptionDialogSize(uint32_t width, uint32_t height) {
  // The key is opened, never made, for writing.
  if (registry_.OpenKey(kUser, kPlayerKey, kWriteAccess) != RegistryError::kSuccess) return kFail;
  if (registry_.SetDword(kUser, kPlayerKey, kWidthName, width, kWriteAccess) != RegistryError::kSuccess) return kFail;
  if (registry_.SetDword(kUser, kPlayerKey, kHeightName, height, kWriteAccess) != RegistryError::kSuccess)
    return kFail;
  return kOk;
}

int32_t BrokerPrefMethods::MarkAutoUpdaterForRun(const char16_t* xmlFromServer) {
  if (!xmlFromServer) return kInvalid;
  std::string narrow;
  const bool converted = platform_.ToSystemCodePage(xmlFromServer, narrow);
  // No path: the updater started at logon is the running process.
  return marking_.MarkAutoUpdaterForRun(converted ? narrow.c_str() : nullptr) ? kOk : kFail;
}

int32_t BrokerPrefMethods::DelayScreensaver() {
  const uint32_t timeout = platform_.GetScreenSaveTimeout();
  if (timeout == 0) return kFail;
  // Setting the time-out, even to the same value, restarts the system's idle count.
  platform_.SetScreenSaveTimeout(0);
  platform_.SetScreenSaveTimeout(timeout);
  return kOk;
}

int32_t BrokerPrefMethods::GetDirectInputCount(uint32_t* count) {
  if (!count) return kInvalid;
  *count = platform_.CountGameControllers();
  return kOk;
}

int32_t BrokerPrefMethods::IsDriveAvailable(const char16_t* rootPathName) {
  if (!rootPathName || rootPathName[0] == 0 || rootPathName[1] != u':') return kInvalid;
  // Whatever follows the colon is the client's and is not passed on.
  const char16_t root[] = {rootPathName[0], u':', u'\\', 0};
  bool bound = false;
  const int32_t answer = platform_.QueryVolume(root, bound);
  return bound && answer == 1 ? kOk : BrokerHresult::kNo;
}

}  // namespace SASM
