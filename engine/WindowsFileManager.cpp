#include "engine/WindowsFileManager.h"

#include "engine/MString.h"
#include "engine/SystemConfigFile.h"
#include "engine/SystemPaths.h"

namespace SASM {
namespace {

// Not guarded: two threads filling at once compute the same text, and the
// later fill is dropped because the value is no longer empty.
struct ProcessValues {
  std::string assetCache;
  std::string cache;
  std::string privateData;
  std::string configFile;
  std::string playerDirectory;
};

ProcessValues& Values() {
  static ProcessValues values;
  return values;
}

template <typename Lookup>
std::string Fill(std::string& value, Lookup lookup) {
  if (value.empty()) {
    MString path;
    if (lookup(path) && value.empty()) value = path.ToUtf8();
  }
  return value;
}

}  // namespace

WindowsFileManager::WindowsFileManager(const Platform& platform) : platform_(platform) {
  MString path = MString::FromUtf8(GetConfigFilePath().c_str());
  SystemConfigFile config(*platform_.files, path.View());
  enableLocalAppData_ = SystemConfigFile::IsTrue(config.Get("EnableLocalAppData")) ? 1 : 0;
}

std::string WindowsFileManager::GetAssetCachePath() {
  SystemPaths paths(platform_);
  return Fill(Values().assetCache, [&](MString& path) { return paths.GetAssetCacheDirectory(path); });
}

std::string WindowsFileManager::GetCacheDirectoryPath() {
  SystemPaths paths(platform_);
  return Fill(Values().cache, [&](MString& path) { return paths.GetCacheDirectory(path); });
}

std::string WindowsFileManager::GetPlayerDataPath() {
  SystemPaths paths(platform_);
  return Fill(Values().playerDirectory,
              [&](MString& path) { return paths.GetPlayerDirectory(EnableLocalAppData(), path); });
}

std::string WindowsFileManager::GetPrivateDataPath() {
  SystemPaths paths(platform_);
  return Fill(Values().privateData, [&](MString& path) { return paths.GetPrivateDataDirectory(path); });
}

std::string WindowsFileManager::GetConfigFilePath() {
  SystemPaths paths(platform_);
  return Fill(Values().configFile, [&](MString& path) { return paths.GetSystemConfigFilePath(path); });
}

void WindowsFileManager::ForgetProcessValues() { Values() = ProcessValues(); }

}  // namespace SASM
