#include "engine/InstallEngine.h"

#include "engine/ErrorCodes.h"
#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/Reporter.h"
#include "engine/SettingsTree.h"
#include "engine/SystemPaths.h"

namespace SASM {

InstallEngine::InstallEngine(LumenBrokerShim* owner, const Platform& platform)
    : uninstallRoot(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"),
      uninstallRootWow(u"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"),
      productCode1(u"{FFB768E4-E427-4553-BC36-A11F5E62A94D}"),
      productCode2(u"{95A0B13E-F09A-425F-9D5F-E7C5EC470D06}"),
      productCode3(u"{1C5EC8F6-5C5F-421F-85BE-919B5D0CAD4C}"),
      productCode4(u"{14CAE90A-7395-4DF6-93AD-14AF6E52922B}"),
      version(kVersion),
      shim(owner),
      platform_(platform) {}

HostCallbacks& InstallEngine::Host() const { return *shim->host; }

bool InstallEngine::ListDirectory(MStringList& list, const MString& directory) {
  std::vector<std::u16string> names;
  int32_t error = platform_.files->EnumerateDirectory(directory.View(), names);
  if (error != 0) {
    Reporter::ReportPathError(Host(), Severity::kLogged, ErrorCode::kDirectoryListingFailed, directory,
                              static_cast<uint32_t>(error));
    return false;
  }
  // The first entry is skipped on purpose; ".." stays in the list.
  for (size_t i = 1; i < names.size(); ++i) list.Add(MString(std::u16string_view(names[i])));
  return true;
}

namespace {

enum class Source { Setting, BaseListing, ProductListing };

struct ListRow {
  Source source;
  const char16_t* setting;
  MStringList InstallEngine::*list;
  bool counts;
};

// Row 8 fills the plug-in list on purpose: the PPAPI clean-up never sees those ids.
constexpr ListRow kListRows[] = {
    {Source::Setting, u"AddRemoveProgramsGUIDsAX", &InstallEngine::guidsAX, true},
    {Source::Setting, u"AddRemoveProgramsGUIDsPlugin", &InstallEngine::guidsPlugin, true},
    {Source::Setting, u"AddRemoveProgramsGUIDsPepper", &InstallEngine::guidsPepper, true},
    {Source::Setting, u"FilenamesAX", &InstallEngine::filenamesAX, true},
    {Source::Setting, u"FilenamesPlugin", &InstallEngine::filenamesPlugin, true},
    {Source::Setting, u"AddRemoveProgramsGUIDsAXSelf", &InstallEngine::guidsAX, false},
    {Source::Setting, u"AddRemoveProgramsGUIDsPluginSelf", &InstallEngine::guidsPlugin, false},
    {Source::Setting, u"AddRemoveProgramsGUIDsPepperSelf", &InstallEngine::guidsPlugin, false},
    {Source::Setting, u"AXFilenamePatterns", &InstallEngine::axPatterns, true},
    {Source::Setting, u"PluginFilenamePatterns", &InstallEngine::pluginPatterns, true},
    {Source::Setting, u"PepperFilenamePatterns", &InstallEngine::pepperPatterns, true},
    {Source::BaseListing, nullptr, &InstallEngine::systemEntries, true},
    {Source::Setting, u"ProductManagerDirectoryPatterns", &InstallEngine::productManagerPatterns, true},
    {Source::ProductListing, nullptr, &InstallEngine::productManagerEntries, true},
};

}  // namespace

bool InstallEngine::LoadEngineLists() {
  SettingsTree* settings = Host().GetSettings();
  SystemPaths paths(platform_);

  MString system32;
  bool haveBase = paths.GetSystem32Path(system32);
  baseDirectory = system32;
  baseDirectory.AppendPath(u'\\', MString(u"Halcyons")).AppendPath(u'\\', MString(u"Lumen")).Append(u"\\");
  bool haveProduct = paths.GetProductDirectory(productDirectory);

  bool result = true;
  for (const ListRow& row : kListRows) {
    MStringList& list = this->*row.list;
    bool ok = false;
    switch (row.source) {
      case Source::Setting:
        ok = settings && LoadStringList(list, *settings, MString(row.setting));
        break;
      case Source::BaseListing:
        ok = haveBase && ListDirectory(list, baseDirectory);
        break;
      case Source::ProductListing:
        ok = haveProduct && ListDirectory(list, productDirectory);
        break;
    }
    if (row.counts && !ok) result = false;
  }
  return result;
}

}  // namespace SASM
