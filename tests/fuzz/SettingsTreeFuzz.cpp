// The host's settings text as the reference host takes it, then every lookup
// the host and the engine make on it, and lookups by names the text itself holds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "engine/FilePattern.h"
#include "engine/MStringList.h"
#include "engine/SettingsTree.h"
#include "host/ReferenceHost.h"

using namespace SASM;

namespace {

// The engine's lists and the conflict search's tables.
constexpr const char16_t* kEngineKeys[] = {
    u"FilenamesAX",         u"FilenamesPlugin",        u"FilenamesPepper",         u"AXFilenamePatterns",
    u"PluginFilenamePatterns", u"PepperFilenamePatterns", u"ProductManagerDirectoryPatterns",
    u"ExpressInstallURL",   u"ConflictsToIgnore.explorer", u"PluginConflicts.firefox", u"FriendlyProcessNames.excel",
    u"Host",                u"Host.",                  u".",                       u"",
};

bool HasDot(const MString& name) { return name.FindFirst(".") < name.Length(); }

// A name found by its own key is that node or one of the same name before it.
void CheckFound(const SettingsTree& tree, const MString& key, const MString& name) {
  const SettingsNode* found = FindSetting(tree, key);
  if (!found || !found->name.Equals(name)) std::abort();
  const SettingsNode* byPrefix = FindSettingByPrefix(tree, key);
  if (!byPrefix || !name.StartsWith(byPrefix->name)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  MString text = MString::FromUtf8(reinterpret_cast<const char*>(data), static_cast<int32_t>(size));
  ReferenceHost host(HostOptions{}, text);

  // What the module asks its host.
  MString a, b;
  uint8_t flag = 0;
  host.GetPayloadPath(a);
  host.ConflictCheckIsOptional();
  host.ConflictsBlockInstall();
  host.IsRestartRequired();
  host.GetBrowserPaths(a, b);
  host.GetPluginPaths(a, b);
  host.GetPepperPaths(a, b);
  host.GetControlPanelAppletName(a);
  host.GetSettingsManagerFileName(a);
  host.GetUtilityPath(a);
  host.GetUpdateServiceFileName(a);
  host.GetFeedbackServiceFileName(a);
  host.GetDownloadSettings(a, flag);
  host.GetOsClass();
  host.SkipsUpdateChoice();
  host.AnalyticsAllowed();
  host.GetSessionMode();
  host.GetPreviousActiveXVersion(a);
  host.GetPreviousPluginVersion(a);
  host.GetPreviousPepperVersion(a);
  host.GetTaskCommandPath(a);

  SettingsTree& tree = *host.GetSettings();
  for (const char16_t* key : kEngineKeys) {
    MStringList list;
    LoadStringList(list, tree, MString(key));
    FindSettingByPrefix(tree, MString(key));
    // Each value as a removal pattern, matched against the list itself.
    for (const MStringList::MStringNode* node = list.head; node; node = node->next) {
      FilePattern pattern(node->key);
      MStringList matches;
      MString last;
      pattern.CollectAll(list, MString(u"C:\\Lumen"), matches);
      pattern.FindLast(list, MString(u"C:\\Lumen"), last);
    }
  }

  // Every top-level name and every name one block down is found by its own key
  // when no dot splits it.
  const SettingsNode* document = tree.first;
  for (const SettingsNode* node = document->children; node; node = node->next) {
    if (node->name.IsEmpty() || HasDot(node->name)) continue;
    CheckFound(tree, node->name, node->name);
    for (const SettingsNode* child = node->children; child; child = child->next) {
      if (child->name.IsEmpty() || HasDot(child->name)) continue;
      MString key = node->name;
      key.Append(u".").Append(child->name);
      if (!FindSetting(tree, key)) std::abort();
    }
  }

  // A second document goes in front and is searched first.
  ParseSettings(tree, text);
  if (tree.first == document || tree.first->next != document) std::abort();
  return 0;
}
