#pragma once
// The reference host's answers to the module: settings text from a file (its
// "Host" block holds the host's own values), flags and install source from the
// command line or else from that block, and every report kept in memory.
#include <functional>
#include <string>

#include "engine/HostCallbacks.h"
#include "engine/SettingsTree.h"
#include "host/HostOptions.h"
#include "host/MemoryMessageLog.h"

namespace SASM {

class ReferenceHost : public HostCallbacks {
 public:
  // The host's own strings, which the module's table leaves out; "^" takes the value.
  static constexpr uint32_t kPercentTextId = 15;
  static constexpr uint32_t kWindowTitleId = 29;

  // Told of the window's calls that the host only records: the operation's name and its value.
  using Observer = std::function<void(const char* operation, int32_t value)>;

  ReferenceHost(const HostOptions& options, const MString& settingsText);

  void ReportMessage(int64_t reserved, int32_t severity, int32_t code, MString text) override;
  void LoadStringFallback(MString& out, uint32_t id, int32_t flag) override;
  MessageLog* GetMessageLog() override { return &log_; }
  uint32_t GetFlags() override;
  bool DecompressImage(void* output, uint32_t outputSize, const void* input, uint32_t inputSize) override;
  MString& GetPayloadPath(MString& out) override;
  bool ConflictCheckIsOptional() override;
  bool ConflictsBlockInstall() override;
  void NotifyConflictsCleared(void*) override { Observe("NotifyConflictsCleared", 0); }
  bool IsRestartRequired() override;
  void GetBrowserPaths(MString& controlName, MString& helperName) override;
  void GetPluginPaths(MString& controlName, MString& helperName) override;
  void GetPepperPaths(MString& controlName, MString& helperName) override;
  void GetControlPanelAppletName(MString& out) override;
  void GetSettingsManagerFileName(MString& out) override;
  void GetUtilityPath(MString& out) override;
  void GetUpdateServiceFileName(MString& out) override;
  void GetFeedbackServiceFileName(MString& out) override;
  SettingsTree* GetSettings() override { return &settings_; }
  uint32_t GetInstallSource() override;
  void GetDownloadSettings(MString& out, uint8_t& flag) override;
  uint32_t GetOsClass() override;
  bool SkipsUpdateChoice() override;
  bool AnalyticsAllowed() override;
  uint32_t GetSessionMode() override;
  void BeginRemoval() override { Observe("BeginRemoval", 0); }
  void FileRemovalFinished(int32_t value) override { Observe("FileRemovalFinished", value); }
  MString& GetPreviousActiveXVersion(MString& out) override;
  MString& GetPreviousPluginVersion(MString& out) override;
  MString& GetPreviousPepperVersion(MString& out) override;
  MString& GetTaskCommandPath(MString& out) override;
  bool GetUpdateDialogData(MStringList& properties) override;
  void SetAutoUpdateChoice(int32_t mode) override;
  void StoreUpdateChoice(int32_t value) override;

  void SetObserver(Observer observer) { observer_ = std::move(observer); }
  int32_t AutoUpdateChoice() const { return autoUpdateChoice_; }
  int32_t StoredUpdateChoice() const { return storedUpdateChoice_; }
  // The selected product kinds of GetFlags alone.
  uint32_t Kinds();

  // The folder that a relative DownloadSettings path is read from: the host's own.
  void SetDirectory(std::u16string directory) { directory_ = std::move(directory); }

  MemoryMessageLog& Log() { return log_; }
  // The log as lines of text, one per entry, through the log's own format.
  std::string FormatLog();

 private:
  // First value of Host.<name>, or empty.
  MString HostValue(const char16_t* name, int index = 0) const;
  bool HostFlag(const char16_t* name, bool fallback) const;
  uint32_t HostNumber(const char16_t* name, uint32_t fallback) const;
  void Observe(const char* operation, int32_t value) {
    if (observer_) observer_(operation, value);
  }

  HostOptions options_;
  SettingsTree settings_;
  MemoryMessageLog log_;
  int32_t autoUpdateChoice_ = 0;
  int32_t storedUpdateChoice_ = 0;
  std::u16string directory_;
  Observer observer_;
};

}  // namespace SASM
