#pragma once
// A host whose every answer the installer window asks for is a field, with a
// record of what the window told it, and a shim whose conflict list, file
// test and browser openings are scripted. For the window and panel tests.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/SettingsTree.h"
#include "host/MemoryMessageLog.h"

namespace SASM {

class FakeInstallerHost : public HostCallbacks {
 public:
  void ReportMessage(int64_t, int32_t severity, int32_t code, MString text) override { log.Add(severity, code, text); }
  // Flag 1 (the window's texts): "<id>" unless strings holds one; the host's own "^" texts included.
  void LoadStringFallback(MString& out, uint32_t id, int32_t) override {
    for (const auto& [key, text] : strings) {
      if (key == id) {
        out = MString(std::u16string_view(text));
        return;
      }
    }
    out = MString(std::u16string_view(u"<" + std::u16string(MString::FromUnsigned(id).View()) + u">"));
  }
  MessageLog* GetMessageLog() override { return &log; }
  uint32_t GetFlags() override { return flags; }
  bool DecompressImage(void*, uint32_t, const void*, uint32_t) override { return false; }
  MString& GetPayloadPath(MString& out) override { return out = MString(u""); }
  bool ConflictCheckIsOptional() override { return conflictCheckIsOptional; }
  bool ConflictsBlockInstall() override { return conflictsBlockInstall; }
  void NotifyConflictsCleared(void*) override { calls.push_back("NotifyConflictsCleared"); }
  bool IsRestartRequired() override { return restartRequired; }
  void GetBrowserPaths(MString&, MString&) override {}
  void GetPluginPaths(MString&, MString&) override {}
  void GetPepperPaths(MString&, MString&) override {}
  void GetControlPanelAppletName(MString&) override {}
  void GetSettingsManagerFileName(MString& out) override { out = MString(std::u16string_view(settingsManager)); }
  void GetUtilityPath(MString&) override {}
  void GetUpdateServiceFileName(MString&) override {}
  void GetFeedbackServiceFileName(MString&) override {}
  SettingsTree* GetSettings() override { return &settings; }
  uint32_t GetInstallSource() override { return installSource; }
  void GetDownloadSettings(MString&, uint8_t& flag) override { flag = 0; }
  uint32_t GetOsClass() override { return 2; }
  bool SkipsUpdateChoice() override { return skipsUpdateChoice; }
  bool AnalyticsAllowed() override { return false; }
  uint32_t GetSessionMode() override { return sessionMode; }
  void BeginRemoval() override { calls.push_back("BeginRemoval"); }
  void FileRemovalFinished(int32_t) override {}
  MString& GetPreviousActiveXVersion(MString& out) override { return out = MString(std::u16string_view(versions[0])); }
  MString& GetPreviousPluginVersion(MString& out) override { return out = MString(std::u16string_view(versions[1])); }
  MString& GetPreviousPepperVersion(MString& out) override { return out = MString(std::u16string_view(versions[2])); }
  MString& GetTaskCommandPath(MString& out) override { return out = MString(u""); }
  bool GetUpdateDialogData(MStringList& properties) override {
    for (const auto& [key, value] : updateDialogData)
      properties.Add(MString(std::u16string_view(key)), MString(std::u16string_view(value)));
    return updateDialogDataAnswers;
  }
  void SetAutoUpdateChoice(int32_t mode) override { autoUpdateChoices.push_back(mode); }
  void StoreUpdateChoice(int32_t value) override { storedUpdateChoices.push_back(value); }

  // Adds a document of start-up properties, searched before the ones added earlier.
  void AddSettings(const char16_t* text) { ParseSettings(settings, MString(text)); }

  uint32_t flags = 0;
  uint32_t installSource = 0;
  uint32_t sessionMode = 0;
  bool conflictCheckIsOptional = false;
  bool conflictsBlockInstall = true;
  bool restartRequired = false;
  bool skipsUpdateChoice = false;
  std::u16string settingsManager = u"LumenPlayerApp.exe";
  std::u16string versions[3] = {u"", u"", u""};
  bool updateDialogDataAnswers = false;
  std::vector<std::pair<std::u16string, std::u16string>> updateDialogData;
  std::vector<std::pair<uint32_t, std::u16string>> strings;
  SettingsTree settings;
  MemoryMessageLog log;
  std::vector<std::string> calls;
  std::vector<int32_t> autoUpdateChoices;
  std::vector<int32_t> storedUpdateChoices;
};

class FakeInstallerShim : public LumenBrokerShim {
 public:
  explicit FakeInstallerShim(HostCallbacks* host, const Platform& platform = Platform{})
      : LumenBrokerShim(host, platform) {}

  // A fresh list of the scripted names; null when listing is set to fail.
  MStringList* FindConflicts(uint32_t mask) override {
    askedMasks.push_back(mask);
    if (conflictsFail) return nullptr;
    auto* list = new MStringList();
    for (const auto& name : conflicts) list->Add(MString(std::u16string_view(name)));
    return list;
  }
  bool OpenExpressInstallUrl(void* window) override {
    opened.push_back("<express>");
    windows.push_back(window);
    return true;
  }
  bool OpenUrl(void* window, MString url) override {
    opened.push_back(url.ToUtf8());
    windows.push_back(window);
    return true;
  }
  bool IsBadRealPlayer() override { return badPlayer; }

  std::vector<std::u16string> conflicts;
  bool conflictsFail = false;
  bool badPlayer = false;
  std::vector<uint32_t> askedMasks;
  std::vector<std::string> opened;
  std::vector<void*> windows;
};

}  // namespace SASM
