#pragma once
// The object behind the shim: this build's constants and the lists that drive
// removal and conflict detection, filled once from the host's settings.
#include <cstdint>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;
class HostCallbacks;
class SettingsTree;

class InstallEngine {
 public:
  static constexpr char16_t kVersion[] = u"28.0.0.126";
  static constexpr char16_t kMajorVersion[] = u"28.0";

  InstallEngine(LumenBrokerShim* shim, const Platform& platform);
  InstallEngine(const InstallEngine&) = delete;
  InstallEngine& operator=(const InstallEngine&) = delete;

  // Appends to every list, so a second call doubles them.
  bool LoadEngineLists();
  // Enumerates directory\*, skipping the first entry the platform returns.
  bool ListDirectory(MStringList& list, const MString& directory);

  HostCallbacks& Host() const;
  const Platform& GetPlatform() const { return platform_; }

  uint8_t initialized = 0;
  MString uninstallRoot;
  MString uninstallRootWow;
  MString productCode1;
  MString productCode2;
  MString productCode3;
  MString productCode4;
  MString version;
  MStringList guidsAX;
  MStringList guidsPlugin;
  MStringList guidsPepper;
  MStringList filenamesAX;
  MStringList filenamesPlugin;
  MStringList reserved;
  MStringList pluginDirectories;
  MStringList axPatterns;
  MStringList pluginPatterns;
  MStringList pepperPatterns;
  MStringList systemEntries;
  MStringList extraActiveXFiles;
  MStringList extraPluginFiles;
  MStringList extraPepperFiles;
  MStringList productManagerPatterns;
  MStringList productManagerEntries;
  LumenBrokerShim* shim;

  // Where LoadEngineLists found the two listed directories.
  MString baseDirectory;
  MString productDirectory;

 private:
  Platform platform_;
};

}  // namespace SASM
