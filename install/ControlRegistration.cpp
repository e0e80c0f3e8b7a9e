#include "install/ControlRegistration.h"

#include <vector>

#include "engine/HostCallbacks.h"
#include "engine/InstallEngine.h"
#include "engine/LumenBrokerShim.h"
#include "engine/ProductIds.h"
#include "engine/ProductKind.h"
#include "engine/VendorIdentity.h"
#include "install/ProductInventory.h"
#include "install/ReportingRegistry.h"

namespace SASM {
namespace {

constexpr char16_t kPublisher[] = u"Corva Systems Incorporated";

struct KindWords {
  uint32_t kind;
  const char16_t* label;
  const char16_t* word;
  const char16_t* oldSuffix;
};

constexpr KindWords kKindWords[] = {
    {ProductKind::kActiveX, u"ActiveX", u"activex", u""},
    {ProductKind::kNpapi, u"NPAPI", u"plugin", u"Plugin"},
    {ProductKind::kPpapi, u"PPAPI", u"pepperplugin", u"Pepper"},
};

KindWords WordsFor(uint32_t kind) {
  for (const KindWords& words : kKindWords) {
    if (words.kind == kind) return words;
  }
  return {kind, u"", u"", u""};
}

enum class Key { Uninstall, Product, ReleaseType, Compatibility, Plugin };

// Where a row's data comes from.
enum class Data {
  Text,
  Zero,
  One,
  BuildVersion,
  DisplayName,
  VersionMajor,
  VersionMinor,
  UninstallCommand,
  UninstallerPath,
  PlayerPath,
  EstimatedSize,
  ScriptDebugger,
  Msi,
  PluginProductName,
};

struct Row {
  Key key;
  const char16_t* name;
  bool isNumber;
  Data data;
  const char16_t* text = nullptr;
};

constexpr Row kUninstallEntry[] = {
    {Key::Uninstall, u"DisplayName", false, Data::DisplayName},
    {Key::Uninstall, u"Publisher", false, Data::Text, kPublisher},
    {Key::Uninstall, u"DisplayVersion", false, Data::BuildVersion},
    {Key::Uninstall, u"HelpLink", false, Data::Text, Vendor::kSupportUrl},
    {Key::Uninstall, u"NoModify", true, Data::One},
    {Key::Uninstall, u"NoRepair", true, Data::One},
    {Key::Uninstall, u"RequiresIESysFile", false, Data::Text, u"4.70.0.1155"},
    {Key::Uninstall, u"URLInfoAbout", false, Data::Text, Vendor::kHomeUrl},
    {Key::Uninstall, u"URLUpdateInfo", false, Data::Text, Vendor::kUpdateUrl},
    {Key::Uninstall, u"VersionMajor", true, Data::VersionMajor},
    {Key::Uninstall, u"VersionMinor", true, Data::VersionMinor},
    {Key::Uninstall, u"UninstallString", false, Data::UninstallCommand},
    {Key::Uninstall, u"DisplayIcon", false, Data::UninstallerPath},
    {Key::Uninstall, u"EstimatedSize", true, Data::EstimatedSize},
};

constexpr Row kInventory[] = {
    {Key::Product, u"Version", false, Data::BuildVersion},
    // Twice in succession, as every earlier installer wrote it.
    {Key::Product, u"Version", false, Data::BuildVersion},
    {Key::Product, u"PlayerPath", false, Data::PlayerPath},
    {Key::Product, u"UninstallerPath", false, Data::UninstallerPath},
    {Key::Product, u"isScriptDebugger", true, Data::ScriptDebugger},
    {Key::Product, u"isESR", true, Data::Zero},
    {Key::Product, u"isMSI", true, Data::Msi},
    {Key::ReleaseType, u"Release", true, Data::One},
};

constexpr Row kActiveXCompatibility[] = {
    {Key::Compatibility, u"Compatibility Flags", true, Data::Zero},
};

constexpr Row kPluginEntry[] = {
    {Key::Plugin, u"Path", false, Data::PlayerPath},
    {Key::Plugin, u"ProductName", false, Data::PluginProductName},
    {Key::Plugin, u"Vendor", false, Data::Text, kPublisher},
    {Key::Plugin, u"Description", false, Data::PluginProductName},
    {Key::Plugin, u"Version", false, Data::BuildVersion},
};

// What the rows of one sequence are resolved against.
struct Facts {
  uint32_t kind = 0;
  MString playerPath;
  MString uninstallerPath;
  uint32_t hostFlags = 0;
  uint32_t installSource = 0;
  uint32_t estimatedSize = 0;
};

MString BuildVersion() { return MString(InstallEngine::kVersion); }

MString KeyOf(Key key, uint32_t kind) {
  switch (key) {
    case Key::Uninstall: return ControlRegistration::GetUninstallEntryKey(kind);
    case Key::Product: return ProductInventory::GetProductKey(kind);
    case Key::ReleaseType: return ProductInventory::GetReleaseTypeKey(kind);
    case Key::Compatibility: return ControlRegistration::GetCompatibilityKey();
    case Key::Plugin: return ControlRegistration::GetPluginKey();
  }
  return MString::Empty();
}

ReportingRegistry::Value Resolve(const Row& row, const Facts& facts) {
  ReportingRegistry::Value value{RegistryHive::Machine, KeyOf(row.key, facts.kind), MString(row.name), row.isNumber,
                                 MString::Empty(), 0};
  MString version = BuildVersion();
  MString afterMajor = version;
  MString major = afterMajor.TakeUntil(".");
  afterMajor.Take(1);
  switch (row.data) {
    case Data::Text: value.text = MString(row.text); break;
    case Data::Zero: value.number = 0; break;
    case Data::One: value.number = 1; break;
    case Data::BuildVersion: value.text = version; break;
    case Data::DisplayName:
      // The major version only: one entry stays the same across updates of that major.
      value.text = MString(u"Corva Lumen Player ");
      value.text.Append(major).Append(u" ").Append(WordsFor(facts.kind).label).Append(u" 64-bit");
      break;
    case Data::VersionMajor: value.number = major.ParseDigits(); break;
    case Data::VersionMinor: value.number = afterMajor.SpanUntil(".").ParseDigits(); break;
    case Data::UninstallCommand:
      value.text = facts.uninstallerPath;
      value.text.Append(u" -maintain ").Append(WordsFor(facts.kind).word);
      break;
    case Data::UninstallerPath: value.text = facts.uninstallerPath; break;
    case Data::PlayerPath: value.text = facts.playerPath; break;
    case Data::EstimatedSize: value.number = facts.estimatedSize; break;
    case Data::ScriptDebugger: value.number = (facts.hostFlags & HostFlag::kReleasePlayer) ? 0 : 1; break;
    case Data::Msi: value.number = facts.installSource == 2 ? 1 : 0; break;
    case Data::PluginProductName:
      value.text = MString(u"Corva\u00AE Lumen\u00AE Player ");
      value.text.Append(version).Append(u" Plugin");
      break;
  }
  return value;
}

template <size_t N>
std::vector<ReportingRegistry::Value> ResolveAll(const Row (&rows)[N], const Facts& facts) {
  std::vector<ReportingRegistry::Value> values;
  values.reserve(N);
  for (const Row& row : rows) values.push_back(Resolve(row, facts));
  return values;
}

}  // namespace

MString ControlRegistration::GetUninstallEntryKey(uint32_t kind) {
  MString key(kUninstallPrefix);
  return key.Append(WordsFor(kind).label);
}

MString ControlRegistration::GetOldUninstallKey(uint32_t kind) {
  MString key(kUninstallPrefix);
  return key.Append(WordsFor(kind).oldSuffix);
}

MString ControlRegistration::GetCompatibilityKey() {
  MString key(u"SOFTWARE\\Microsoft\\Internet Explorer\\ActiveX Compatibility\\");
  return key.Append(MString(std::u16string_view(ProductIds::kControlClass.WideText())));
}

MString ControlRegistration::GetPluginKey() {
  MString key(kPluginsRoot);
  return key.Append(u"\\").Append(Vendor::kPluginId);
}

MString ControlRegistration::GetImageExecutionKey(const MString& name) {
  MString key(kImageExecutionRoot);
  return key.Append(name);
}

uint32_t ControlRegistration::EstimatedSize() {
  MString payload;
  shim_.host->GetPayloadPath(payload);
  FileHandleId handle = 0;
  if (platform_.files->Open(payload.View(), static_cast<int32_t>(FileOpenMode::Read), handle) != 0)
    return kDefaultEstimatedSize;
  uint64_t size = 0;
  int32_t error = platform_.files->GetSize(handle, size);
  platform_.files->Close(handle);
  return error == 0 ? static_cast<uint32_t>(size >> 10) : kDefaultEstimatedSize;
}

bool ControlRegistration::WriteUninstallEntry(uint32_t kind, const MString& uninstallerPath) {
  Facts facts;
  facts.kind = kind;
  facts.uninstallerPath = uninstallerPath;
  facts.estimatedSize = EstimatedSize();
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.WriteSequence(ResolveAll(kUninstallEntry, facts));
}

bool ControlRegistration::WriteInventory(const MString& playerPath, const MString& uninstallerPath, uint32_t kind) {
  Facts facts;
  facts.kind = kind;
  facts.playerPath = playerPath;
  facts.uninstallerPath = uninstallerPath;
  facts.hostFlags = shim_.host->GetFlags();
  facts.installSource = shim_.host->GetInstallSource();
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  bool chain = registry.WriteSequence(ResolveAll(kInventory, facts));
  if (chain && kind == ProductKind::kActiveX) chain = registry.WriteSequence(ResolveAll(kActiveXCompatibility, facts));
  // Runs after a broken chain too: the executables need it whatever else was written.
  bool exceptionChain = WriteExceptionChainValues(kind);
  return chain && exceptionChain;
}

bool ControlRegistration::WriteExceptionChainValues(uint32_t kind) {
  MStringList* list = nullptr;
  switch (kind) {
    case ProductKind::kActiveX: list = shim_.GetExtraActiveXFiles(); break;
    case ProductKind::kNpapi: list = shim_.GetExtraPluginFiles(); break;
    case ProductKind::kPpapi: list = shim_.GetExtraPepperFiles(); break;
    default: return true;
  }
  if (!list) return true;
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  bool result = true;
  const MString executable(u".exe");
  for (const MStringList::MStringNode* node = list->head; node; node = node->next) {
    if (!node->key.EndsWith(executable)) continue;
    if (!registry.SetDword(RegistryHive::Machine, GetImageExecutionKey(node->key), u"DisableExceptionChainValidation", 0))
      result = false;
  }
  return result;
}

bool ControlRegistration::WritePluginRegistry(const MString& path) {
  Facts facts;
  facts.playerPath = path;
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.WriteSequence(ResolveAll(kPluginEntry, facts));
}

bool ControlRegistration::DeleteImageExecutionKey(const MString& name) {
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.DeleteKey(RegistryHive::Machine, GetImageExecutionKey(name));
}

bool ControlRegistration::ReadPluginPath(MString& path) {
  // The plug-in key's last part names a value of the plug-in root; nothing here writes
  // one, so the read finds only what another writer left.
  MString key = GetPluginKey();
  MString valueName = key.CutTail("\\");
  valueName.Take(1);
  ReportingRegistry registry(*shim_.host, *platform_.registry);
  return registry.ReadString(RegistryHive::Machine, key, valueName, path);
}

int32_t ControlRegistration::DeletePluginRegistry() {
  return platform_.registry->DeleteTree(RegistryHive::Machine, GetPluginKey().View());
}

}  // namespace SASM
