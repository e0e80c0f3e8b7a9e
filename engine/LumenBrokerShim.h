#pragma once
// The whole surface the host sees: Start returns one of these. The virtual
// operations are in table order; the host calls them through the table only.
#include <cstdint>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/Platform.h"

namespace SASM {

class HostCallbacks;
class InstallEngine;
class MorphUI;

class LumenBrokerShim {
 public:
  LumenBrokerShim(HostCallbacks* host, const Platform& platform);
  virtual ~LumenBrokerShim();

  // Looks the id up in the host's resource module; falls back to the host or to "MISSING LOCALIZATION".
  virtual MString& LoadString(MString& out, uint32_t id, uint8_t useHost);
  virtual MorphUI* CreateUI();
  virtual void DestroyUI(void* ignored, MorphUI* ui);
  virtual bool ReleaseTypeMatches(uint32_t kinds, uint32_t expected);
  virtual bool CheckInstallAllowed(uint32_t kinds, int32_t& code, uint32_t mode);
  virtual bool IsUacEnabled();
  virtual bool UninstallProduct(uint32_t kind, MString file, uint8_t removeSafeVersions);
  virtual bool RegisterProduct(uint32_t kind, MString playerPath, MString uninstallerPath, MString ignored,
                               uint8_t writeUninstallEntry);
  virtual bool RemoveUpdateService(void* ignored, MString directory);
  virtual bool RemoveProductKind(uint32_t kind, MString directory, uint8_t a, uint8_t b);
  virtual bool RemoveNamedFiles(uint32_t kinds, MString directory);
  virtual bool RemoveOneFile(MString name, MString path);
  virtual bool RemovePatternFiles(uint32_t kinds, MString directory);
  virtual bool RefreshElevationPolicy();
  virtual bool RegisterBrokerServer(MString path, uint32_t kind);
  virtual bool RegisterActiveXControl(MString path);
  virtual bool RegisterPluginEntry(MString path);
  virtual bool UnregisterActiveXControl(uint8_t removeSafeVersions, MString ignored);
  virtual bool StopPlayers();
  virtual int32_t RunBroker();
  virtual InstallEngine* GetEngine();
  virtual MStringList* GetAXFilenames();
  virtual MStringList* GetPluginFilenames();
  virtual MStringList* GetPluginDirectories();
  virtual MStringList* GetAXFilenamePatterns();
  virtual MStringList* GetPluginFilenamePatterns();
  virtual MStringList* GetPepperFilenamePatterns();
  virtual MStringList* GetProductManagerPatterns();
  virtual MStringList* GetProductManagerEntries();
  virtual bool StoreConflicts(uint32_t value);
  virtual bool HasStoredConflicts();
  virtual MStringList* FindConflicts(uint32_t value);
  virtual MStringList* GetExtraActiveXFiles();
  virtual MStringList* GetExtraPluginFiles();
  virtual MStringList* GetExtraPepperFiles();
  virtual bool AddExtraActiveXFile(MString path);
  virtual bool AddExtraPluginFile(MString path);
  virtual bool AddExtraPepperFile(MString path);
  virtual bool LoadEngineLists();
  virtual bool MarkUpdateRejected();
  virtual bool ReadUpdateDescription(MStringList& out);
  virtual bool ExtractMetaBlock(MString text, MString& out);
  virtual bool ExtractUpdateVersion(MString text, MString& out);
  virtual bool FindDefaultBrowser();
  virtual bool OpenExpressInstallUrl(void* window);
  virtual bool OpenUrl(void* window, MString url);
  virtual bool OpenControlPanelApplet();
  virtual bool IsBadRealPlayer();
  virtual int32_t GetInstalledVersionState(uint32_t kind);
  virtual uint8_t WasRegistrationReached();

  // Gives a newly built shim (of any kind) its engine; null stays null.
  static LumenBrokerShim* WithEngine(LumenBrokerShim* shim);

  // The seams this shim runs on, for the installation and removal steps it builds.
  const Platform& GetPlatform() const { return platform_; }

  HostCallbacks* host;
  InstallEngine* engine;
  MString browserName;
  uint8_t registrationReached;

 protected:
  // Says plainly that an operation is not part of this build yet.
  void ReportNotAvailable(const char16_t* operation);
  Platform platform_;
};

// Builds a shim for host over the given platform; null only when the shim itself cannot be allocated.
LumenBrokerShim* StartShim(HostCallbacks* host, const Platform& platform);

}  // namespace SASM
