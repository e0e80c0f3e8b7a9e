#include "removal/ConflictingProcesses.h"

#include <iterator>
#include <memory>
#include <new>
#include <string>

#include "engine/HostCallbacks.h"
#include "engine/ProductKind.h"
#include "engine/SettingsTree.h"
#include "install/ProductInventory.h"

namespace SASM {
namespace {

// Install sources that test a kind even when its installed file name differs from this run's.
constexpr uint32_t kForcedSources[] = {8, 10};

constexpr char16_t kIgnoreTable[] = u"ConflictsToIgnore.";
constexpr char16_t kFriendlyNames[] = u"FriendlyProcessNames.";

// The kinds in the order a process is judged: the first whose table knows its key decides.
struct KindRule {
  uint32_t kind;
  const char16_t* conflictTable;
};
constexpr KindRule kKindOrder[] = {
    {ProductKind::kNpapi, u"PluginConflicts."},
    {ProductKind::kActiveX, u"ActiveXConflicts."},
    {ProductKind::kPpapi, u"PepperConflicts."},
};
enum KindAt : size_t { kNpapiAt, kActiveXAt, kPpapiAt };

constexpr const char16_t* kBrowserNames[] = {u"firefox.exe", u"chrome.exe",  u"safari.exe",   u"opera.exe",
                                              u"netscape.exe", u"mozilla.exe", u"seamonkey.exe"};
constexpr const char16_t* kEdgeNames[] = {u"microsoftedge.exe", u"microsoftedgecp.exe", u"spartan.exe",
                                          u"spartan_edge.exe"};
// Compared case-sensitively: only these exact spellings start the refresh.
constexpr const char16_t* kExplorerNames[] = {u"iexplore.exe", u"ieuser.exe"};
// Internet Explorer in the list keeps the helper alive.
constexpr const char16_t* kExplorerKeys[] = {u"iexplore", u"iepreview"};

constexpr int32_t kCsidlProgramFiles = 38;
constexpr int32_t kCsidlProgramFilesX86 = 42;
constexpr char16_t kExplorerBehindProgramFiles[] = u"\\Internet Explorer\\iexplore.exe";
// The command line is copied into room for 260 characters, terminator included.
constexpr size_t kCommandRoom = 259;

constexpr char16_t kRealPlayerKey[] = u"SOFTWARE\\RealNetworks\\RealPlayer";

MString FileNameOf(const MString& path) { return path.Substring(path.FindLast("\\") + 1, -1); }

// Lower-case (ASCII) with the part from the last "." cut off.
MString KeyOf(const MString& name) {
  MString key = name.ToLower();
  key.CutTail(".");
  return key;
}

MString Joined(const char16_t* prefix, const MString& key) {
  MString text(prefix);
  return text.Append(key);
}

const SettingsNode* FirstValue(const SettingsNode* node) { return node ? node->values : nullptr; }

// What one pass knows of a kind, beside its rule.
struct KindState {
  MString thisRunsFile;
  MString playerPath;
  bool installed = false;
  bool tested = false;
};

bool AnyOf(const MString& text, const auto& names) {
  for (const char16_t* name : names) {
    if (text.Equals(MString(name))) return true;
  }
  return false;
}

}  // namespace

IProcesses::ListResult ConflictingProcesses::ListFirstProcesses(std::vector<uint32_t>& ids) {
  if (!platform_.processes) return IProcesses::ListResult::kFailed;
  return platform_.processes->ListProcessIds(kListBytes, ids);
}

bool ConflictingProcesses::GetProcessIdentity(uint32_t processId, MString& name, MString& path) {
  if (!platform_.processes) return false;
  std::u16string nameText, pathText;
  IProcesses::IdentitySource source = platform_.processes->ReadIdentity(processId, nameText, pathText);
  if (source == IProcesses::IdentitySource::kNotOpened) return false;
  path = MString(std::u16string_view(pathText));
  name = source == IProcesses::IdentitySource::kImageName ? FileNameOf(path) : MString(std::u16string_view(nameText));
  return true;
}

MStringList* ConflictingProcesses::FindConflicts(uint32_t kinds) {
  std::vector<uint32_t> ids;
  // A missing listing function leaves nothing to look at; a failed listing is no answer at all.
  if (ListFirstProcesses(ids) == IProcesses::ListResult::kFailed) return nullptr;
  auto* conflicts = new (std::nothrow) MStringList;
  if (!conflicts) return nullptr;

  KindState states[std::size(kKindOrder)];
  MString helperName, unused;
  host_.GetBrowserPaths(states[kActiveXAt].thisRunsFile, helperName);
  host_.GetPluginPaths(states[kNpapiAt].thisRunsFile, unused);
  host_.GetPepperPaths(states[kPpapiAt].thisRunsFile, unused);
  MString helperKey = helperName;
  helperKey.CutTail(".");
  helperKey = helperKey.ToLower();

  uint32_t source = host_.GetInstallSource();
  bool forced = source == kForcedSources[0] || source == kForcedSources[1];

  ProductInventory inventory(host_, *platform_.registry);
  for (size_t k = 0; k < std::size(kKindOrder); ++k) {
    KindState& state = states[k];
    if (!(kinds & kKindOrder[k].kind)) continue;
    MString uninstallerPath;
    state.installed = inventory.ReadPlayerPaths(kKindOrder[k].kind, state.playerPath, uninstallerPath);
    bool sameFile = FileNameOf(state.playerPath).ToLower().Equals(state.thisRunsFile.ToLower());
    state.tested = sameFile || host_.IsRestartRequired() || forced;
  }
  // A mandatory check looks at every installed kind, whatever its file is called.
  if (!host_.ConflictCheckIsOptional()) {
    for (size_t k = 0; k < std::size(kKindOrder); ++k)
      states[k].tested = (kinds & kKindOrder[k].kind) && states[k].installed;
  }

  SettingsTree noSettings;
  SettingsTree* given = host_.GetSettings();
  const SettingsTree& settings = given ? *given : noSettings;

  MString helperPath;
  uint32_t helperId = 0;
  for (uint32_t id : ids) {
    MString name, path;
    if (!GetProcessIdentity(id, name, path) || name.IsEmpty()) continue;
    MString key = KeyOf(name);
    if (conflicts->Contains(key)) continue;
    // By prefix: an ignored name also ignores every longer key that starts with it.
    if (FindSettingByPrefix(settings, Joined(kIgnoreTable, key))) continue;

    const SettingsNode* known = nullptr;
    for (size_t k = 0; k < std::size(kKindOrder) && !known; ++k) {
      if (states[k].tested) known = FindSetting(settings, Joined(kKindOrder[k].conflictTable, key));
    }
    bool conflict = known != nullptr;
    if (!conflict) {
      std::vector<std::u16string> modules;
      platform_.processes->ListModulePaths(id, modules);
      for (const std::u16string& module : modules) {
        // A module whose name couldn't be read is no installed file.
        for (size_t k = 0; k < std::size(kKindOrder) && !module.empty(); ++k)
          conflict = conflict || (states[k].tested && std::u16string_view(module) == states[k].playerPath.View());
      }
    }
    if (conflict) {
      const SettingsNode* shown = FirstValue(known);
      if (!shown) shown = FirstValue(FindSetting(settings, Joined(kFriendlyNames, key)));
      conflicts->Add(key, shown ? shown->name : key);
    }
    if (key.Equals(helperKey)) {
      helperId = id;
      helperPath = path;
    }
  }
  if (kinds & ProductKind::kActiveX) TerminateActiveXHelper(*conflicts, helperPath, helperId);
  return conflicts;
}

void ConflictingProcesses::TerminateActiveXHelper(const MStringList& conflicts, const MString& helperPath,
                                                  uint32_t helperId) {
  if (conflicts.Count() == 0 && helperId == 0) return;
  bool explorerInTheWay = false;
  for (const char16_t* key : kExplorerKeys) explorerInTheWay = explorerInTheWay || conflicts.Contains(MString(key));
  bool isPayload = false;
  if (!helperPath.IsEmpty()) {
    MString payload;
    host_.GetPayloadPath(payload);
    isPayload = payload.ToLower().Equals(helperPath.ToLower());
  }
  if (helperId != 0 && !explorerInTheWay && !isPayload && platform_.processes)
    platform_.processes->Terminate(helperId, 0);
}

bool ConflictingProcesses::StoreConflicts(uint32_t kinds) {
  std::unique_ptr<MStringList> conflicts(FindConflicts(kinds));
  if (!conflicts || conflicts->Count() == 0) return false;
  // No escaping: a shown name with a comma in it reads back as two.
  MString joined = MString::Empty();
  for (const MStringList::MStringNode* node = conflicts->head; node; node = node->next) {
    if (node != conflicts->head) joined.Append(u",");
    joined.Append(node->value);
  }
  return platform_.registry->SetString(RegistryHive::CurrentUser, kStoreKey, kStoreValue, joined.View()) == 0;
}

bool ConflictingProcesses::HasStoredConflicts() {
  return platform_.registry->DeleteValue(RegistryHive::CurrentUser, kStoreKey, kStoreValue,
                                         RegistryAccess::kWrite) == 0;
}

MString ConflictingProcesses::FindDefaultBrowser() {
  std::vector<uint32_t> ids;
  // The bare name lets the shell find the browser when the processes can't be listed.
  if (ListFirstProcesses(ids) != IProcesses::ListResult::kListed) return MString(u"firefox.exe");
  MString browser = MString::Empty();
  for (uint32_t id : ids) {
    MString name, path;
    if (!GetProcessIdentity(id, name, path)) continue;
    if (AnyOf(name.ToLower(), kBrowserNames)) browser = path;
  }
  return browser;
}

void ConflictingProcesses::RefreshIEElevationInSessions() {
  std::vector<uint32_t> ids;
  if (ListFirstProcesses(ids) != IProcesses::ListResult::kListed || ids.empty()) return;
  for (uint32_t id : ids) {
    MString name, path;
    if (!GetProcessIdentity(id, name, path) || !AnyOf(name, kExplorerNames)) continue;
    MString utility;
    host_.GetUtilityPath(utility);
    MString command(u"\"");
    command.Append(utility).Append(u"\" -refreshIEElevationPolicies");
    // One start per matching process, even for several of one user; failures are passed over.
    platform_.processes->StartAsUserOf(id, command.View().substr(0, kCommandRoom));
  }
}

bool ConflictingProcesses::IsBrowserWindow(void* window) {
  if (!window || !platform_.processes) return false;
  uint32_t processId = platform_.processes->GetWindowProcessId(window);
  if (processId == 0) return false;
  MString name, path;
  if (!GetProcessIdentity(processId, name, path)) return false;
  MString lowerPath = path.ToLower();
  for (int32_t csidl : {kCsidlProgramFiles, kCsidlProgramFilesX86}) {
    std::u16string folder;
    if (!platform_.system->GetFolderPath(csidl, folder)) continue;
    MString explorer{std::u16string_view(folder)};
    explorer.Append(kExplorerBehindProgramFiles);
    if (lowerPath.Equals(explorer.ToLower())) return true;
  }
  return AnyOf(name.ToLower(), kEdgeNames);
}

bool ConflictingProcesses::IsBadRealPlayer() {
  std::u16string version;
  if (platform_.registry->ReadString(RegistryHive::Machine, kRealPlayerKey, u"version", version) != 0) return false;
  MString major = MString(std::u16string_view(version)).SpanUntil(".");
  // Versions 6, 60 and 6.0 alike.
  return !major.IsEmpty() && major.At(0) == u'6';
}

}  // namespace SASM
