#pragma once
// The table of operations a host supplies to Start, in table order. Both the
// module and the host are built from this header, so the order is the contract.
#include <cstdint>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/MessageLog.h"

namespace SASM {

class LumenBrokerShim;
class SettingsTree;

class HostCallbacks {
 public:
  virtual ~HostCallbacks() = default;
  // The first argument is always 0.
  virtual void ReportMessage(int64_t reserved, int32_t severity, int32_t code, MString text) = 0;
  // flag 1 from the window for every text, 0 from LoadString.
  virtual void LoadStringFallback(MString& out, uint32_t id, int32_t flag) = 0;
  virtual MessageLog* GetMessageLog() = 0;
  virtual uint32_t GetFlags() = 0;
  virtual bool DecompressImage(void* output, uint32_t outputSize, const void* input, uint32_t inputSize) = 0;
  virtual MString& GetPayloadPath(MString& out) = 0;
  virtual bool ConflictCheckIsOptional() = 0;
  virtual bool ConflictsBlockInstall() = 0;
  virtual void NotifyConflictsCleared(void* always_null) = 0;
  virtual bool IsRestartRequired() = 0;
  virtual void GetBrowserPaths(MString& controlName, MString& helperName) = 0;
  virtual void GetPluginPaths(MString& controlName, MString& helperName) = 0;
  virtual void GetPepperPaths(MString& controlName, MString& helperName) = 0;
  virtual void GetControlPanelAppletName(MString& out) = 0;
  virtual void GetSettingsManagerFileName(MString& out) = 0;
  virtual void GetUtilityPath(MString& out) = 0;
  virtual void GetUpdateServiceFileName(MString& out) = 0;
  virtual void GetFeedbackServiceFileName(MString& out) = 0;
  virtual SettingsTree* GetSettings() = 0;
  virtual uint32_t GetInstallSource() = 0;
  virtual void GetDownloadSettings(MString& out, uint8_t& flag) = 0;
  virtual uint32_t GetOsClass() = 0;
  virtual bool SkipsUpdateChoice() = 0;
  virtual bool AnalyticsAllowed() = 0;
  virtual uint32_t GetSessionMode() = 0;
  virtual void BeginRemoval() = 0;
  virtual void FileRemovalFinished(int32_t always_zero) = 0;
  virtual MString& GetPreviousActiveXVersion(MString& out) = 0;
  virtual MString& GetPreviousPluginVersion(MString& out) = 0;
  virtual MString& GetPreviousPepperVersion(MString& out) = 0;
  virtual MString& GetTaskCommandPath(MString& out) = 0;
  // Fills "message", "size" and "autoUpdateMode" as key/value pairs.
  virtual bool GetUpdateDialogData(MStringList& properties) = 0;
  virtual void SetAutoUpdateChoice(int32_t mode) = 0;
  virtual void StoreUpdateChoice(int32_t value) = 0;

  // Strings and images come from here; null means the running executable.
  void* resourceModule = nullptr;
  // Stored by the host right after Start.
  LumenBrokerShim* shim = nullptr;
};

}  // namespace SASM
