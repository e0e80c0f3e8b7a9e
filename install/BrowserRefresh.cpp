#include "install/BrowserRefresh.h"

#include <string>
#include <vector>

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"

namespace SASM {
namespace {

constexpr char16_t kMozillaKey[] = u"Software\\Mozilla";
constexpr char16_t kOperaKey[] = u"Software\\Opera Software";

// The image names of the browser whose policies the utility refreshes, compared without case.
constexpr char16_t kExplorerImages[][16] = {u"iexplore.exe", u"ieuser.exe"};

bool IsExplorerImage(const std::u16string& name) {
  MString lower = MString(std::u16string_view(name)).ToLower();
  for (const char16_t* image : kExplorerImages) {
    if (lower.Equals(MString(image))) return true;
  }
  return false;
}

}  // namespace

bool BrowserRefresh::ReadOperaDirectory(const char16_t* valueName, MString& directory) {
  IRegistry& registry = *platform_.registry;
  std::u16string text;
  if (registry.ReadString(RegistryHive::CurrentUser, kOperaKey, valueName, text) != 0 &&
      registry.ReadString(RegistryHive::Machine, kOperaKey, valueName, text) != 0)
    return false;
  MString value{std::u16string_view(text)};
  if (value.EndsWith(MString(u".exe"))) {
    // The program's folder holds "Program\Plugins".
    value.CutTail("\\");
    directory = value.AppendPath(u'\\', MString(u"Program\\Plugins"));
    return true;
  }
  if (!value.EndsWith(MString(u"\\Plugins"))) return false;
  directory = value;
  return true;
}

void BrowserRefresh::RefreshPluginDirectories(const MString& fallback) {
  MStringList* directories = shim_.GetPluginDirectories();
  if (!directories || directories->Count() != 0) return;
  IRegistry& registry = *platform_.registry;

  std::vector<std::u16string> products;
  if (registry.EnumerateSubkeys(RegistryHive::Machine, kMozillaKey, products) == 0) {
    for (const std::u16string& product : products) {
      if (product.size() > kMaxSubkeyName) break;
      std::u16string key = std::u16string(kMozillaKey) + u"\\" + product + u"\\extensions";
      std::u16string plugins;
      if (registry.ReadString(RegistryHive::Machine, key, u"Plugins", plugins) == 0)
        directories->Add(MString(std::u16string_view(plugins)));
    }
  }
  MString opera;
  if (ReadOperaDirectory(u"Last CommandLine", opera)) directories->Add(opera);
  if (ReadOperaDirectory(u"Plugin Path", opera)) directories->Add(opera);
  directories->Add(fallback);
}

void BrowserRefresh::AskBrowsersToRefresh() {
  IProcesses* processes = platform_.processes;
  std::vector<uint32_t> ids;
  if (!processes || !processes->EnumerateProcesses(kMaxProcesses, ids)) return;
  MString utility;
  shim_.host->GetUtilityPath(utility);
  MString command(u"\"");
  command.Append(utility).Append(u"\" -refreshIEElevationPolicies");
  for (uint32_t id : ids) {
    std::u16string image;
    if (processes->GetImageBaseName(id, image) != 0 || !IsExplorerImage(image)) continue;
    processes->StartAsUserOf(id, command.View());
  }
}

}  // namespace SASM
