#include "engine/SystemPaths.h"

#include <string>

#include "engine/VendorIdentity.h"

namespace SASM {
namespace {

constexpr char16_t kPlayerDataSuffix[] = u"\\Halcyonics\\Lumen Player";
constexpr char16_t kVendorSuffix[] = u"\\Corva\\Lumen Player";

bool Fits(std::u16string_view path) { return path.size() < static_cast<size_t>(SystemPaths::kMaxPath); }

// Every location is the answer of one 260-character buffer: longer ones are not found.
bool Deliver(std::u16string_view text, MString& path) {
  if (text.empty() || !Fits(text)) return false;
  path = MString(text);
  return true;
}

}  // namespace

bool SystemPaths::GetSystem32Path(MString& path) const {
  std::u16string directory;
  bool found = platform_.system->IsWow64Process() ? platform_.system->GetSystemWow64Directory(directory)
                                                  : platform_.system->GetSystemDirectory(directory);
  return found && Deliver(directory, path);
}

bool SystemPaths::GetConfigSystemDirectory(MString& path) const {
  std::u16string directory;
  if (!platform_.system->GetSystemWow64Directory(directory) && !platform_.system->GetSystemDirectory(directory))
    return false;
  return Deliver(directory, path);
}

bool SystemPaths::GetSystemConfigFilePath(MString& path) const {
  MString directory;
  if (!GetConfigSystemDirectory(directory)) return false;
  return Deliver(directory.ToU16() + u"\\Halcyons\\Lumen\\hms.cfg", path);
}

bool SystemPaths::GetPlayerRoots(bool local, MString& root) const {
  std::u16string folder;
  if (!platform_.system->GetFolderPath(local ? Csidl::kLocalAppData : Csidl::kAppData, folder) || folder.empty()) {
    folder.clear();
    if (platform_.registry->ReadString(RegistryHive::CurrentUser, kShellFoldersKey,
                                       local ? u"Local AppData" : u"AppData", folder) != RegistryError::kSuccess)
      return false;
  }
  return Deliver(folder, root);
}

bool SystemPaths::GetPlayerDataRoot(bool enableLocalAppData, MString& path) const {
  MString root;
  if (!GetPlayerRoots(enableLocalAppData, root)) return false;
  return Deliver(root.ToU16() + kPlayerDataSuffix, path);
}

bool SystemPaths::GetVendorDataRoot(MString& path) const {
  MString root;
  if (!GetPlayerRoots(false, root)) return false;
  return Deliver(root.ToU16() + kVendorSuffix, path);
}

bool SystemPaths::GetSettingsDirectory(bool enableLocalAppData, MString& path) const {
  MString root;
  if (!GetPlayerDataRoot(enableLocalAppData, root)) return false;
  return Deliver(root.ToU16() + u"\\" + Vendor::kSettingsDirectory, path);
}

bool SystemPaths::GetDigestFile(bool enableLocalAppData, const MString& package, MString& path) const {
  MString settings;
  if (!GetSettingsDirectory(enableLocalAppData, settings)) return false;
  return Deliver(settings.ToU16() + u"\\bin\\" + package.ToU16() + u"\\digest.s", path);
}

bool SystemPaths::GetAddInsDirectory(MString& path) const {
  std::u16string programFiles;
  if (!platform_.system->GetFolderPath(Csidl::kProgramFiles, programFiles) || programFiles.empty()) return false;
  MString joined{std::u16string_view(programFiles)};
  joined.AppendPath(u'\\', MString(u"\\Corva\\"))
      .AppendPath(u'\\', MString(u"\\Lumen Player\\"))
      .AppendPath(u'\\', MString(u"\\AddIns\\"));
  return Deliver(joined.View(), path);
}

bool SystemPaths::GetLowIntegrityRoot(bool vistaOrLater, MString& path) const {
  std::u16string temp;
  if (platform_.files->GetTempPath(temp) != FileError::kSuccess || !Fits(temp)) return false;
  if (vistaOrLater && !std::u16string_view(temp).ends_with(u"\\Low\\")) temp += u"Low\\";
  std::u16string longForm;
  if (platform_.files->GetLongPath(temp, longForm) == FileError::kSuccess && Fits(longForm)) temp = longForm;
  return Deliver(temp, path);
}

bool SystemPaths::GetRoamingChild(std::u16string_view child, MString& path) const {
  MString vendor;
  if (!GetVendorDataRoot(vendor)) return false;
  return Deliver(vendor.ToU16() + u"\\" + std::u16string(child), path);
}

bool SystemPaths::GetAssetCacheDirectory(MString& path) const { return GetRoamingChild(u"AssetCache", path); }

bool SystemPaths::GetCacheDirectory(MString& path) const { return GetRoamingChild(u"CLCache", path); }

bool SystemPaths::GetPrivateDataDirectory(MString& path) const { return GetRoamingChild(u"CPSPrivateData2", path); }

bool SystemPaths::GetIconCacheDirectory(MString& path) const { return GetRoamingChild(u"Icon Cache", path); }

bool SystemPaths::GetProductDirectory(MString& path) const {
  MString roaming;
  if (!GetPlayerRoots(false, roaming)) return false;
  return Deliver(roaming.ToU16() + kPlayerDataSuffix + u"\\" + Vendor::kSettingsDirectory + u"\\bin", path);
}

bool SystemPaths::GetPlayerDirectory(bool enableLocalAppData, MString& path) const {
  int32_t csidl = enableLocalAppData ? Csidl::kLocalAppData : Csidl::kAppData;
  std::u16string folder;
  if (!platform_.system->GetFolderPath(csidl | Csidl::kFlagCreate, folder) || folder.empty()) {
    std::string narrow;
    if (platform_.registry->ReadNarrowString(RegistryHive::CurrentUser, kShellFoldersKey,
                                             enableLocalAppData ? u"Local AppData" : u"AppData",
                                             narrow) != RegistryError::kSuccess ||
        narrow.size() >= static_cast<size_t>(kMaxPath))
      return false;
    folder = platform_.system->FromSystemCodePage(narrow);
    if (!folder.empty() && (folder.back() == u'\\' || folder.back() == u'/')) folder.pop_back();
  }
  if (folder.empty() || !Fits(folder)) return false;
  return Deliver(folder + kPlayerDataSuffix, path);
}

bool SystemPaths::GetShellLibraryPath(std::u16string_view library, MString& path) const {
  if (library.find(u'\\') != std::u16string_view::npos) return Deliver(library, path);
  std::u16string system;
  if (!platform_.system->GetFolderPath(Csidl::kSystem, system) || system.empty()) return false;
  return Deliver(system + u"\\" + std::u16string(library), path);
}

}  // namespace SASM
