#include "install/FileReplacer.h"

#include <climits>
#include <cstdio>

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/ProductKind.h"
#include "engine/Reporter.h"
#include "engine/SystemPaths.h"
#include "install/ControlRegistration.h"
#include "install/ProductInventory.h"
#include "install/ReportingRegistry.h"

namespace SASM {
namespace {

bool EndsWithAny(const MString& path, const MStringList& list) {
  for (const MStringList::MStringNode* node = list.head; node; node = node->next) {
    if (path.EndsWith(node->key)) return true;
  }
  return false;
}

int32_t TextLength(const char16_t* text, int32_t capacity) {
  for (int32_t i = 0; i < capacity; ++i) {
    if (text[i] == 0) return i;
  }
  return -1;
}

// Appends text when it fits with its terminator.
bool AppendText(char16_t* buffer, int32_t capacity, int32_t& length, std::u16string_view text) {
  if (static_cast<int64_t>(length) + static_cast<int64_t>(text.size()) + 1 > capacity) return false;
  for (char16_t unit : text) buffer[length++] = unit;
  buffer[length] = 0;
  return true;
}

std::u16string_view Measure(const char16_t* text) {
  size_t n = 0;
  while (text[n] != 0) ++n;
  return std::u16string_view(text, n);
}

}  // namespace

bool FileReplacer::FileExists(const MString& path) {
  FileHandleId handle = 0;
  int32_t error = platform_.files->Open(path.View(), static_cast<int32_t>(FileOpenMode::Read), handle);
  if (error == 0) {
    platform_.files->Close(handle);
    return true;
  }
  return error == FileError::kAccessDenied;
}

const MStringList* FileReplacer::ExtraFiles(uint32_t kind) {
  switch (kind) {
    case ProductKind::kActiveX: return shim_.GetExtraActiveXFiles();
    case ProductKind::kNpapi: return shim_.GetExtraPluginFiles();
    case ProductKind::kPpapi: return shim_.GetExtraPepperFiles();
    default: return nullptr;
  }
}

int32_t FileReplacer::ReplaceFile(const MString& path, uint32_t kind) {
  IFileSystem& files = *platform_.files;
  if (!FileExists(path)) return 0;
  int32_t error = files.Delete(path.View());
  if (error == 0) return 0;
  if (error != FileError::kFileNotFound) {
    Reporter::ReportPathError(*shim_.host, Severity::kLogged, ErrorCode::kFileNotDeleted, path,
                              static_cast<uint32_t>(error));
    if (kind == ProductKind::kActiveX) shim_.StopPlayers();
    files.SetAttributes(path.View(), 0);
    error = files.Delete(path.View());
  }
  if (error == FileError::kAccessDenied || error == FileError::kSharingViolation) {
    bool isKind = kind == ProductKind::kActiveX || kind == ProductKind::kNpapi || kind == ProductKind::kPpapi;
    const MStringList* fresh = ExtraFiles(kind);
    // A file the host named as a fresh part of the product is never queued: the
    // delete at restart would hit the new copy.
    if (!isKind || !fresh || !EndsWithAny(path, *fresh)) ScheduleDeleteAtReboot(path);
  }
  if (error != 0) {
    Reporter::ReportPathError(*shim_.host, Severity::kLogged, ErrorCode::kFileNotDeleted, path,
                              static_cast<uint32_t>(error));
  }
  return error;
}

bool FileReplacer::ScheduleDeleteAtReboot(const MString& path) {
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  // Without it the restart leaves protected files where they are; the queueing goes on either way.
  registry.SetDword(RegistryHive::Machine, kSessionManagerKey, u"AllowProtectedRenames", 1);
  int32_t error = platform_.files->DeleteAtReboot(path.View());
  if (error == 0) return true;
  Reporter::ReportPathErrorDecimal(*shim_.host, Severity::kLogged, ErrorCode::kRebootDeleteFailed, path, error);
  return false;
}

FileReplacer::LockState FileReplacer::TestFileLocked(uint32_t flags, const MString& path) {
  Reporter::ReportPath(*shim_.host, Severity::kInfo, ErrorCode::kTestFileLocked, path);
  if (!(flags & kTestLockFlag)) return kNotLocked;
  if (!FileExists(path)) return kNotLocked;
  IFileSystem& files = *platform_.files;
  FileHandleId handle = 0;
  if (files.Open(path.View(), static_cast<int32_t>(FileOpenMode::Write), handle) == 0) {
    files.Close(handle);
    return kNotLocked;
  }
  if (files.Open(path.View(), static_cast<int32_t>(FileOpenMode::Read), handle) != 0) return kNotLocked;
  uint64_t size = 0;
  if (files.GetSize(handle, size) != 0) size = 0;
  if (size == 0) Reporter::ReportPath(*shim_.host, Severity::kLogged, ErrorCode::kLockedFileEmpty, path);
  files.Close(handle);
  return size > 0 ? kLockedWithContent : kLockedEmpty;
}

bool FileReplacer::RemoveSystemFile(const MString& path) {
  ProductInventory inventory(*shim_.host, *platform_.registry);
  for (uint32_t kind : ProductKind::kAll) {
    MString player, uninstaller;
    if (inventory.ReadPlayerPaths(kind, player, uninstaller)) return true;
  }
  bool deleted = false;
  if (FileExists(path)) deleted = platform_.files->Delete(path.View()) == 0;
  if (path.EndsWith(MString(u".exe"))) {
    MString name = path.TailFrom("\\");
    if (!name.IsEmpty()) name.Take(1);
    else name = path;
    ControlRegistration(shim_, platform_).DeleteImageExecutionKey(name);
  }
  if (!deleted) return false;

  MString key(u"Software\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Extended Properties\\");
  key.Append(platform_.system->WindowsMajorVersion() >= 6 ? u"System.ControlPanel.Category"
                                                          : u"{2CA4F306-B280-4ab2-B5E1-1DFA3583F046}");
  MString valueName, applet;
  SystemPaths(platform_).GetSystem32Path(valueName);
  shim_.host->GetControlPanelAppletName(applet);
  valueName.Append(u"\\").Append(applet);
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.DeleteValue(RegistryHive::Machine, key, valueName);
}

char16_t* FileReplacer::MakeUniqueFileName(char16_t* buffer, int32_t capacity, const char16_t* name,
                                           const char16_t* extension, bool overwrite) {
  if (!buffer || !extension || !name || capacity < 1) return nullptr;
  int32_t length = TextLength(buffer, capacity);
  if (length < 0) return nullptr;
  if ((length == 0 || buffer[length - 1] != u'\\') && !AppendText(buffer, capacity, length, u"\\")) return nullptr;
  std::u16string_view extensionText = Measure(extension);
  if (!AppendText(buffer, capacity, length, Measure(name)) || !AppendText(buffer, capacity, length, extensionText))
    return nullptr;
  if (overwrite || !FileExists(MString(std::u16string_view(buffer, static_cast<size_t>(length))))) return buffer;

  int32_t at = length - static_cast<int32_t>(extensionText.size());
  if (at < 1) return nullptr;
  for (int32_t number = 2;; ++number) {
    char digits[16];
    std::snprintf(digits, sizeof(digits), " (%d)", number);
    std::u16string suffix(digits, digits + std::char_traits<char>::length(digits));
    suffix.append(extensionText);
    // Written up to the capacity, and the last unit forced to 0: a long name is cut.
    int32_t room = capacity - at;
    int32_t written = 0;
    for (; written < room && written < static_cast<int32_t>(suffix.size()); ++written) buffer[at + written] = suffix[written];
    if (written < room) buffer[at + written] = 0;
    buffer[capacity - 1] = 0;
    MString candidate(std::u16string_view(buffer, static_cast<size_t>(TextLength(buffer, capacity))));
    if (!FileExists(candidate)) return buffer;
    // When not even the number's first digit fits, every round names the same taken
    // file, and past the largest number there is nothing left to count: stop there.
    bool noDigitFits = at + 2 > capacity - 2;
    if (noDigitFits || number == INT_MAX) return nullptr;
  }
}

}  // namespace SASM
