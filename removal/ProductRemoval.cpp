#include "removal/ProductRemoval.h"

#include <string>

#include "broker/BrokerRegistration.h"
#include "engine/ErrorCodes.h"
#include "engine/FilePattern.h"
#include "engine/HostCallbacks.h"
#include "engine/InstallEngine.h"
#include "engine/LumenBrokerShim.h"
#include "engine/ProductIds.h"
#include "engine/ProductKind.h"
#include "engine/Reporter.h"
#include "engine/SystemPaths.h"
#include "install/BrowserRefresh.h"
#include "install/ControlRegistration.h"
#include "install/ControlSelfRegistration.h"
#include "install/FileProtection.h"
#include "install/FileReplacer.h"
#include "install/MaintenanceCommands.h"
#include "install/ProductInventory.h"
#include "install/ReportingRegistry.h"
#include "removal/FileTreeCleaner.h"
#include "removal/NotifierTask.h"
#include "removal/UninstallCleanup.h"

namespace SASM {
namespace {

constexpr uint32_t kFirstOsClassWithoutActiveX = 3;
constexpr uint32_t kAllKinds = ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi;

// Everything from the last "." is the extension; a name without one has none.
MString Extension(const MString& name) { return name.TailFrom("."); }

MString WithExtension(const MString& path, const char16_t* extension) {
  MString stem = path;
  stem.CutTail(".");
  return stem.Append(extension);
}

// What is left after cutting from the last backslash; a path without one stays whole.
MString Directory(const MString& path) {
  MString directory = path;
  directory.CutTail("\\");
  return directory;
}

MString FileName(const MString& path) {
  MString name = path.TailFrom("\\");
  if (name.IsEmpty()) return path;
  name.Take(1);
  return name;
}

MString Joined(const MString& directory, const MString& name) {
  MString path = directory;
  return path.AppendPath(u'\\', name);
}

}  // namespace

bool ProductRemoval::UninstallProduct(uint32_t kind, const MString& file, uint8_t removeSafeVersions) {
  UninstallCleanup cleanup(platform_);
  bool result = true;
  if (kind == ProductKind::kActiveX) {
    shim_.UnregisterActiveXControl(removeSafeVersions, file);
    std::string server;
    if (BrokerRegistration::FindBrokerServerPath(*platform_.registry, server))
      FileProtection(platform_).ProtectFile(MString(platform_.system->FromSystemCodePage(server)), false);
    // The broker's keys go whatever is left of them.
    BrokerRegistration::WriteBrokerRegistration(*platform_.registry, nullptr, false);
    result = cleanup.RemoveActiveXClasses();
  } else if (kind == ProductKind::kNpapi) {
    // Kept as it always was: the answer is whether the deletion gave a value above 0,
    // so a key that went answers false and a missing one true.
    result = ControlRegistration(shim_, platform_).DeletePluginRegistry() > 0;
  }
  if (shim_.engine) cleanup.RemoveUninstallEntries(kind, *shim_.engine);
  return result;
}

void ProductRemoval::ReadFallbackPaths(uint32_t kind, MString& playerPath, MString& uninstallerPath) {
  HostCallbacks& host = *shim_.host;
  if (kind == ProductKind::kActiveX) {
    MString key(u"Software\\Classes\\CLSID\\");
    key.Append(MString(std::u16string_view(ProductIds::kControlClass.WideText()))).Append(u"\\InprocServer32");
    ReportingRegistry(host, *platform_.registry).ReadString(RegistryHive::Machine, key, u"", playerPath);
    std::string server;
    if (BrokerRegistration::FindBrokerServerPath(*platform_.registry, server))
      uninstallerPath = MString(platform_.system->FromSystemCodePage(server));
  } else if (kind == ProductKind::kNpapi) {
    ControlRegistration(shim_, platform_).ReadPluginPath(playerPath);
  }
}

bool ProductRemoval::RemoveSystemFiles(const MString& directory) {
  HostCallbacks& host = *shim_.host;
  MString appletName, settingsName;
  host.GetControlPanelAppletName(appletName);
  host.GetSettingsManagerFileName(settingsName);
  MString applet = Joined(directory, appletName);
  MString settingsManager = Joined(directory, settingsName);
  FileReplacer replacer(shim_, platform_);
  bool removed = replacer.RemoveSystemFile(applet);
  if (!removed) {
    Reporter::Report(host, Severity::kLogged, ErrorCode::kSystemFileNotRemoved);
    switch (replacer.TestFileLocked(FileReplacer::kTestLockFlag, applet)) {
      case FileReplacer::kLockedWithContent:
        Reporter::ReportPath(host, Severity::kUserMustKnow, ErrorCode::kSystemFileNotRemoved, applet);
        break;
      case FileReplacer::kLockedEmpty:
        replacer.ScheduleDeleteAtReboot(applet);
        Reporter::ReportPath(host, Severity::kUserMustKnow, ErrorCode::kLockedSystemFileQueued, applet);
        break;
      default:
        break;
    }
  }
  // The settings manager goes its own way: neither its result nor the applet's decides for the other.
  replacer.RemoveSystemFile(settingsManager);
  return removed;
}

bool ProductRemoval::RemoveProductKind(uint32_t kind, const MString& directory, uint8_t a, uint8_t b) {
  HostCallbacks& host = *shim_.host;
  bool result = true;
  auto fail = [&](int32_t code) {
    Reporter::Report(host, Severity::kLogged, code);
    result = false;
  };

  MString playerPath, uninstallerPath;
  ProductInventory inventory(host, *platform_.registry);
  bool pathsRead = inventory.ReadPlayerPaths(kind, playerPath, uninstallerPath);
  if (!pathsRead) {
    fail(ErrorCode::kPathsNotRead);
    ReadFallbackPaths(kind, playerPath, uninstallerPath);
  }

  shim_.UninstallProduct(kind, directory, a);

  FileReplacer replacer(shim_, platform_);
  if (playerPath.IsEmpty()) fail(ErrorCode::kNoPlayerPath);
  else replacer.ReplaceFile(playerPath, kind);

  if (uninstallerPath.IsEmpty()) {
    fail(ErrorCode::kNoUninstallerPath);
  } else {
    replacer.ReplaceFile(uninstallerPath, kind);
    // The ActiveX kind's uninstaller may have a library twin of the same name.
    if (kind == ProductKind::kActiveX) replacer.ReplaceFile(WithExtension(uninstallerPath, u".dll"), kind);
  }

  if (pathsRead && !inventory.DeleteProductKey(kind)) fail(ErrorCode::kProductKeyNotDeleted);
  if (!inventory.CleanRegistry(kind)) fail(ErrorCode::kRegistryCleanFailed);

  if (host.GetOsClass() < kFirstOsClassWithoutActiveX && !RemoveSystemFiles(directory)) result = false;

  MString serviceDirectory = Directory(playerPath);
  MString updateName, feedbackName;
  host.GetUpdateServiceFileName(updateName);
  host.GetFeedbackServiceFileName(feedbackName);
  MString updatePath = Joined(serviceDirectory, updateName);
  MString feedbackPath = Joined(serviceDirectory, feedbackName);
  MaintenanceCommands commands(shim_, platform_);
  if (!commands.RemoveFeedbackService(feedbackPath, updatePath)) fail(ErrorCode::kFeedbackServiceRemovalFailed);
  if (!commands.RemoveUpdateServiceFile(updatePath, b != 0)) fail(ErrorCode::kUpdateServiceRemovalFailed);

  // The task's absence is no failure of the removal.
  if (kind == ProductKind::kPpapi) NotifierTask::RemoveNotifierTask(host, platform_);
  return result;
}

bool ProductRemoval::RemoveUpdateService(const MString& directory) {
  HostCallbacks& host = *shim_.host;
  if (host.GetFlags() & HostFlag::kReleasePlayer) return true;
  MString name;
  host.GetUpdateServiceFileName(name);
  MString path = Joined(directory, MString(kUpdateServiceFolder));
  path.Append(name);
  if (MaintenanceCommands(shim_, platform_).RemoveUpdateServiceFile(path, true)) return true;
  Reporter::Report(host, Severity::kLogged, ErrorCode::kUpdateServiceRemovalFailed);
  return false;
}

bool ProductRemoval::RemoveNamedFiles(uint32_t kinds, const MString& directory) {
  FileReplacer replacer(shim_, platform_);
  if (kinds & ProductKind::kActiveX) {
    if (const MStringList* names = shim_.GetAXFilenames()) {
      for (const MStringList::MStringNode* node = names->head; node; node = node->next) {
        MString path = Joined(directory, node->key);
        if (replacer.FileExists(path)) shim_.RemoveOneFile(node->key, path);
      }
    }
  }
  if (kinds & ProductKind::kNpapi) {
    BrowserRefresh(shim_, platform_).RefreshPluginDirectories(directory);
    const MStringList* directories = shim_.GetPluginDirectories();
    const MStringList* names = shim_.GetPluginFilenames();
    if (directories && names) {
      for (const MStringList::MStringNode* folder = directories->head; folder; folder = folder->next) {
        for (const MStringList::MStringNode* name = names->head; name; name = name->next)
          replacer.ReplaceFile(Joined(folder->key, name->key), ProductKind::kNpapi);
      }
    }
  }
  shim_.host->FileRemovalFinished(0);
  return true;
}

bool ProductRemoval::RemoveOneFile(const MString& name, const MString& path) {
  FileReplacer replacer(shim_, platform_);
  MString extension = Extension(name);
  if (extension == MString(u".ocx")) {
    FileProtection(platform_).ProtectFile(path, false);
    ControlSelfRegistration(shim_, platform_).UnregisterControl(path);
    replacer.ReplaceFile(path, ProductKind::kActiveX);
  } else if ((name.StartsWith(MString(u"LumenUtil")) || name.StartsWith(MString(u"GetLumen"))) &&
             extension == MString(u".exe")) {
    FileProtection(platform_).ProtectFile(path, false);
    replacer.ReplaceFile(path, ProductKind::kServerFile);
  } else {
    replacer.ReplaceFile(path, ProductKind::kNone);
  }
  return true;
}

void ProductRemoval::RemoveMatches(const MStringList* patterns, uint32_t kind) {
  InstallEngine* engine = shim_.engine;
  if (!patterns || !engine) return;
  FileReplacer replacer(shim_, platform_);
  for (const MStringList::MStringNode* node = patterns->head; node; node = node->next) {
    MString found;
    if (!FilePattern(node->key).FindLast(engine->systemEntries, engine->baseDirectory, found)) continue;
    if (kind != ProductKind::kActiveX) {
      replacer.ReplaceFile(found, kind);
      continue;
    }
    // The pattern, not the file's name, decides how the file goes.
    shim_.RemoveOneFile(node->key, found);
    if (found.EndsWith(MString(u".exe")))
      ControlRegistration(shim_, platform_).DeleteImageExecutionKey(FileName(found));
  }
}

bool ProductRemoval::RemovePatternFiles(uint32_t kinds, const MString&) {
  if (kinds & ProductKind::kActiveX) RemoveMatches(shim_.GetAXFilenamePatterns(), ProductKind::kActiveX);
  if (kinds & ProductKind::kNpapi) RemoveMatches(shim_.GetPluginFilenamePatterns(), ProductKind::kNpapi);
  if (kinds & ProductKind::kPpapi) RemoveMatches(shim_.GetPepperFilenamePatterns(), ProductKind::kPpapi);
  // The per-user product manager folders go only when every kind goes.
  if ((kinds & kAllKinds) != kAllKinds) return true;
  const MStringList* patterns = shim_.GetProductManagerPatterns();
  const MStringList* entries = shim_.GetProductManagerEntries();
  MString productDirectory;
  if (!patterns || !entries || !SystemPaths(platform_).GetProductDirectory(productDirectory)) return true;
  MStringList matches;
  for (const MStringList::MStringNode* node = patterns->head; node; node = node->next)
    FilePattern(node->key).CollectAll(*entries, productDirectory, matches);
  FileTreeCleaner cleaner(platform_);
  for (const MStringList::MStringNode* node = matches.head; node; node = node->next) cleaner.DeleteTree(node->key);
  return true;
}

}  // namespace SASM
