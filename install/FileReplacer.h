#pragma once
// How player files go when they may be in use: deletion, a delete queued for
// the next restart, the lock test, the two system-directory files, and a free
// file name for a cached copy.
#include <cstdint>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;

class FileReplacer {
 public:
  static constexpr char16_t kSessionManagerKey[] = u"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
  // The flag of TestFileLocked that asks for the test at all.
  static constexpr uint32_t kTestLockFlag = 512;

  enum LockState : int32_t { kNotLocked = 0, kLockedWithContent = 1, kLockedEmpty = 2 };

  FileReplacer(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  // Opens for reading; access denied counts as existing too.
  bool FileExists(const MString& path);
  // The final system error, 0 when the file is gone. Kind 8, 16 or 32768, or 0 or 2 for no product.
  int32_t ReplaceFile(const MString& path, uint32_t kind);
  bool ScheduleDeleteAtReboot(const MString& path);
  LockState TestFileLocked(uint32_t flags, const MString& path);
  // For the control panel applet and the settings manager, left alone while any kind is installed.
  bool RemoveSystemFile(const MString& path);
  // buffer (capacity units, terminated) gets "\", name and extension; on a clash " (n)"
  // goes before the extension, counting from 2. Null when it can't be made.
  char16_t* MakeUniqueFileName(char16_t* buffer, int32_t capacity, const char16_t* name, const char16_t* extension,
                               bool overwrite);

 private:
  // The host's list of fresh files for the kind; null when the kind has none.
  const MStringList* ExtraFiles(uint32_t kind);

  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
