#include "engine/LumenBrokerShim.h"

#include <new>

#include "broker/BrokerRegistration.h"
#include "delivery/UpdateDescription.h"
#include "delivery/UpdateMarking.h"
#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/InstallEngine.h"
#include "engine/ProductIds.h"
#include "engine/ProductKind.h"
#include "engine/Reporter.h"
#include "engine/SettingsTree.h"
#include "engine/StringLookup.h"
#include "install/BrowserRefresh.h"
#include "install/ControlRegistration.h"
#include "install/ControlSelfRegistration.h"
#include "install/FileProtection.h"
#include "install/ProductInventory.h"
#include "install/ReportingRegistry.h"
#include "removal/ConflictingProcesses.h"
#include "removal/ProductRemoval.h"

namespace SASM {

LumenBrokerShim* LumenBrokerShim::WithEngine(LumenBrokerShim* shim) {
  if (!shim) return nullptr;
  // A failed engine allocation leaves the engine null, unreported.
  shim->engine = new (std::nothrow) InstallEngine(shim, shim->platform_);
  return shim;
}

LumenBrokerShim* StartShim(HostCallbacks* host, const Platform& platform) {
  return LumenBrokerShim::WithEngine(new (std::nothrow) LumenBrokerShim(host, platform));
}

LumenBrokerShim::LumenBrokerShim(HostCallbacks* h, const Platform& platform)
    : host(h), engine(nullptr), browserName(MString::Empty()), registrationReached(0), platform_(platform) {}

LumenBrokerShim::~LumenBrokerShim() { delete engine; }

void LumenBrokerShim::ReportNotAvailable(const char16_t* operation) {
  MString text(operation);
  text.Append(u": not available in this build");
  Reporter::ReportText(*host, Severity::kUserMustKnow, ErrorCode::kNotAvailable, text);
}

MString& LumenBrokerShim::LoadString(MString& out, uint32_t id, uint8_t useHost) {
  return StringLookup::Load(*platform_.system, *host, out, id, useHost != 0);
}

MorphUI* LumenBrokerShim::CreateUI() {
  ReportNotAvailable(u"CreateUI");
  return nullptr;
}

void LumenBrokerShim::DestroyUI(void*, MorphUI* ui) {
  // Nothing can have been created yet; a null window is ignored as always.
  if (ui) ReportNotAvailable(u"DestroyUI");
}

bool LumenBrokerShim::ReleaseTypeMatches(uint32_t kinds, uint32_t expected) {
  return ProductInventory(*host, *platform_.registry).ReleaseTypeMatches(kinds, expected);
}

bool LumenBrokerShim::CheckInstallAllowed(uint32_t kinds, int32_t& code, uint32_t mode) {
  int32_t versionRefused = mode == 1 ? ErrorCode::kVersionRefusedMode1 : ErrorCode::kVersionRefused;
  ProductInventory inventory(*host, *platform_.registry);
  for (uint32_t kind : ProductKind::kAll) {
    if (!(kinds & kind)) continue;
    if (!ReleaseTypeMatches(kind, mode)) {
      code = ErrorCode::kReleaseTypeMismatch;
      return false;
    }
    // Only ActiveX consults the safe list; only the plug-ins refuse a downgrade.
    bool allowed = kind == ProductKind::kActiveX
                       ? inventory.IsSafeVersion()
                       : inventory.CompareInstalledVersion(kind) != ProductInventory::kNewer;
    if (!allowed) {
      code = versionRefused;
      return false;
    }
  }
  return true;
}

bool LumenBrokerShim::IsUacEnabled() {
  if (platform_.system->WindowsMajorVersion() < 6) return false;
  uint32_t enableLua = 0;
  // A value that cannot be read counts as 0.
  if (platform_.registry->ReadDword(RegistryHive::Machine, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System",
                                    u"EnableLUA", enableLua) != 0)
    enableLua = 0;
  return static_cast<int32_t>(enableLua) > 0;
}

bool LumenBrokerShim::UninstallProduct(uint32_t kind, MString file, uint8_t removeSafeVersions) {
  return ProductRemoval(*this, platform_).UninstallProduct(kind, file, removeSafeVersions);
}

bool LumenBrokerShim::RegisterProduct(uint32_t kind, MString playerPath, MString uninstallerPath, MString,
                                      uint8_t writeUninstallEntry) {
  registrationReached = 0;
  if (!RegisterBrokerServer(uninstallerPath, kind)) return false;
  if (kind == ProductKind::kActiveX && !RegisterActiveXControl(playerPath)) return false;
  if (kind == ProductKind::kNpapi && !RegisterPluginEntry(playerPath)) return false;
  registrationReached = 1;
  ControlRegistration registration(*this, platform_);
  // Both write sequences report their own failures; neither changes the answer.
  if (writeUninstallEntry) registration.WriteUninstallEntry(kind, uninstallerPath);
  registration.WriteInventory(playerPath, uninstallerPath, kind);
  return true;
}

bool LumenBrokerShim::RemoveUpdateService(void*, MString directory) {
  return ProductRemoval(*this, platform_).RemoveUpdateService(directory);
}

bool LumenBrokerShim::RemoveProductKind(uint32_t kind, MString directory, uint8_t a, uint8_t b) {
  return ProductRemoval(*this, platform_).RemoveProductKind(kind, directory, a, b);
}

bool LumenBrokerShim::RemoveNamedFiles(uint32_t kinds, MString directory) {
  return ProductRemoval(*this, platform_).RemoveNamedFiles(kinds, directory);
}

bool LumenBrokerShim::RemoveOneFile(MString name, MString path) {
  return ProductRemoval(*this, platform_).RemoveOneFile(name, path);
}

bool LumenBrokerShim::RemovePatternFiles(uint32_t kinds, MString directory) {
  return ProductRemoval(*this, platform_).RemovePatternFiles(kinds, directory);
}

bool LumenBrokerShim::RefreshElevationPolicy() {
  ReportNotAvailable(u"RefreshElevationPolicy");
  return false;
}

bool LumenBrokerShim::RegisterBrokerServer(MString path, uint32_t kind) {
  if (kind != ProductKind::kActiveX) return true;
  BrokerRegistration::WriteBrokerRegistration(*platform_.registry, path.NarrowString().c_str(), true);
  FileProtection(platform_).ProtectFile(path, true);
  BrowserRefresh(*this, platform_).AskBrowsersToRefresh();
  return true;
}

bool LumenBrokerShim::RegisterActiveXControl(MString path) {
  if (!ControlSelfRegistration(*this, platform_).RegisterControl(path)) return false;
  FileProtection protection(platform_);
  protection.ProtectFile(path, true);
  protection.RepairRegistryAccess();
  return true;
}

bool LumenBrokerShim::RegisterPluginEntry(MString path) {
  // True whatever the writes did: their failures are in the log.
  ControlRegistration(*this, platform_).WritePluginRegistry(path);
  return true;
}

bool LumenBrokerShim::UnregisterActiveXControl(uint8_t removeSafeVersions, MString) {
  MString key(u"Software\\Classes\\CLSID\\");
  key.Append(MString(std::u16string_view(ProductIds::kControlClass.WideText()))).Append(u"\\InprocServer32");
  MString path;
  bool found = ReportingRegistry(*host, *platform_.registry).ReadString(RegistryHive::Machine, key, u"", path);
  if (found) {
    FileProtection(platform_).ProtectFile(path, false);
    ControlSelfRegistration(*this, platform_).UnregisterControl(path);
  }
  if (removeSafeVersions) ProductInventory(*host, *platform_.registry).DeleteSafeVersions();
  return found;
}

bool LumenBrokerShim::StopPlayers() {
  Reporter::Report(*host, Severity::kInfo, ErrorCode::kStopPlayers);
  FileProtection(platform_).RepairRegistryAccess();
  return true;
}

int32_t LumenBrokerShim::RunBroker() {
  ReportNotAvailable(u"RunBroker");
  return static_cast<int32_t>(0x80004005u);
}

InstallEngine* LumenBrokerShim::GetEngine() { return engine; }

MStringList* LumenBrokerShim::GetAXFilenames() { return engine ? &engine->filenamesAX : nullptr; }
MStringList* LumenBrokerShim::GetPluginFilenames() { return engine ? &engine->filenamesPlugin : nullptr; }
MStringList* LumenBrokerShim::GetPluginDirectories() { return engine ? &engine->pluginDirectories : nullptr; }
MStringList* LumenBrokerShim::GetAXFilenamePatterns() { return engine ? &engine->axPatterns : nullptr; }
MStringList* LumenBrokerShim::GetPluginFilenamePatterns() { return engine ? &engine->pluginPatterns : nullptr; }
MStringList* LumenBrokerShim::GetPepperFilenamePatterns() { return engine ? &engine->pepperPatterns : nullptr; }
MStringList* LumenBrokerShim::GetProductManagerPatterns() {
  return engine ? &engine->productManagerPatterns : nullptr;
}
MStringList* LumenBrokerShim::GetProductManagerEntries() {
  return engine ? &engine->productManagerEntries : nullptr;
}

bool LumenBrokerShim::StoreConflicts(uint32_t kinds) {
  return ConflictingProcesses(*host, platform_).StoreConflicts(kinds);
}

bool LumenBrokerShim::HasStoredConflicts() { return ConflictingProcesses(*host, platform_).HasStoredConflicts(); }

MStringList* LumenBrokerShim::FindConflicts(uint32_t kinds) {
  // Unlike the engine's lists this one is new, and the caller frees it.
  return ConflictingProcesses(*host, platform_).FindConflicts(kinds);
}

MStringList* LumenBrokerShim::GetExtraActiveXFiles() { return engine ? &engine->extraActiveXFiles : nullptr; }
MStringList* LumenBrokerShim::GetExtraPluginFiles() { return engine ? &engine->extraPluginFiles : nullptr; }
MStringList* LumenBrokerShim::GetExtraPepperFiles() { return engine ? &engine->extraPepperFiles : nullptr; }

bool LumenBrokerShim::AddExtraActiveXFile(MString path) { return engine && engine->extraActiveXFiles.Add(path); }
bool LumenBrokerShim::AddExtraPluginFile(MString path) { return engine && engine->extraPluginFiles.Add(path); }
bool LumenBrokerShim::AddExtraPepperFile(MString path) { return engine && engine->extraPepperFiles.Add(path); }

bool LumenBrokerShim::LoadEngineLists() { return engine && engine->LoadEngineLists(); }

bool LumenBrokerShim::MarkUpdateRejected() { return UpdateMarking(*platform_.registry).MarkUpdateRejected(); }

bool LumenBrokerShim::ReadUpdateDescription(MStringList& out) {
  return UpdateMarking(*platform_.registry).ReadUpdateDescription(out);
}

bool LumenBrokerShim::ExtractMetaBlock(MString text, MString& out) {
  std::u16string block;
  if (!UpdateDescription::ExtractMetaBlock(text.View(), block)) return false;
  out = MString(std::u16string_view(block));
  return true;
}

bool LumenBrokerShim::ExtractUpdateVersion(MString text, MString& out) {
  std::u16string version;
  if (!UpdateDescription::ExtractUpdateVersion(text.View(), version)) return false;
  out = MString(std::u16string_view(version));
  return true;
}

bool LumenBrokerShim::FindDefaultBrowser() {
  browserName = ConflictingProcesses(*host, platform_).FindDefaultBrowser();
  return !browserName.IsEmpty();
}

bool LumenBrokerShim::OpenExpressInstallUrl(void* window) {
  SettingsTree* settings = host->GetSettings();
  const SettingsNode* node = settings ? FindSetting(*settings, MString(u"ExpressInstallURL")) : nullptr;
  if (!node || !node->values) return false;
  return OpenUrl(window, node->values->name);
}

bool LumenBrokerShim::OpenUrl(void* window, MString url) {
  static constexpr char16_t kExplorer[] = u"c:\\Program Files\\Internet Explorer\\iexplore.exe";
  static constexpr char16_t kExplorerX86[] = u"c:\\Program Files (x86)\\Internet Explorer\\iexplore.exe";
  uint32_t flags = host->GetFlags();
  MString browser;
  if (flags & ProductKind::kActiveX) {
    browser = MString(kExplorer);
  } else if (flags & ProductKind::kNpapi) {
    bool found = !browserName.IsEmpty() || FindDefaultBrowser();
    browser = found ? browserName : MString(u"firefox.exe");
  }
  ISystem& system = *platform_.system;
  auto open = [&](const MString& file) {
    if (file.IsEmpty()) return system.ShellExecute(window, u"open", url.View(), u"");
    return system.ShellExecute(window, u"open", file.View(), url.View());
  };
  intptr_t result = open(browser);
  if (result <= 32 && (flags & ProductKind::kActiveX)) result = open(MString(kExplorerX86));
  if (result > 32) return true;
  return system.ShellExecute(window, u"open", url.View(), u"") > 32;
}

bool LumenBrokerShim::OpenControlPanelApplet() {
  std::u16string windows;
  if (!platform_.system->GetFolderPath(Csidl::kWindows, windows)) return false;
  MString applet{std::u16string_view(windows)};
  applet.AppendPath(u'\\', MString(u"SysWOW64\\LumenPlayerCPLApp.cpl"));
  FileHandleId handle = 0;
  if (platform_.files->Open(applet.View(), static_cast<int32_t>(FileOpenMode::Read), handle) != 0) return false;
  platform_.files->Close(handle);
  MString command(u"control.exe ");
  command.Append(applet);
  platform_.system->StartProcess(command.View());
  // False whatever happened: the host must not wait on the applet.
  return false;
}

bool LumenBrokerShim::IsBadRealPlayer() { return ConflictingProcesses(*host, platform_).IsBadRealPlayer(); }

int32_t LumenBrokerShim::GetInstalledVersionState(uint32_t kind) {
  return ProductInventory(*host, *platform_.registry).CompareInstalledVersion(kind);
}

uint8_t LumenBrokerShim::WasRegistrationReached() { return registrationReached; }

}  // namespace SASM
