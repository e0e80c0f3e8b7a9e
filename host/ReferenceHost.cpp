#include "host/ReferenceHost.h"

#include "engine/LumenBrokerShim.h"
#include "engine/ProductKind.h"

namespace SASM {

ReferenceHost::ReferenceHost(const HostOptions& options, const MString& settingsText) : options_(options) {
  ParseSettings(settings_, settingsText);
}

void ReferenceHost::ReportMessage(int64_t, int32_t severity, int32_t code, MString text) {
  log_.Add(severity, code, text);
}

void ReferenceHost::LoadStringFallback(MString& out, uint32_t id, int32_t flag) {
  // The window asks with flag 1: the module's table answers first and comes
  // back here, with flag 0, for what it lacks.
  if (flag != 0 && shim) {
    shim->LoadString(out, id, 1);
    return;
  }
  switch (id) {
    case kPercentTextId:
      out = MString(u"^%");
      break;
    case kWindowTitleId:
      out = MString(u"Lumen Player ^ Installer");
      break;
    default:
      out = MString(u"[string ");
      out.Append(MString::FromNumber(id)).Append(u"]");
  }
}

bool ReferenceHost::DecompressImage(void*, uint32_t, const void*, uint32_t) { return false; }

MString ReferenceHost::HostValue(const char16_t* name, int index) const {
  MString key(u"Host.");
  key.Append(name);
  const SettingsNode* node = FindSetting(settings_, key);
  const SettingsNode* value = node ? node->values : nullptr;
  for (int i = 0; value && i < index; ++i) value = value->next;
  return value ? value->name : MString::Empty();
}

bool ReferenceHost::HostFlag(const char16_t* name, bool fallback) const {
  MString value = HostValue(name);
  if (value.IsEmpty()) return fallback;
  return value.Equals(MString(u"1")) || value.ToLower().Equals(MString(u"true"));
}

uint32_t ReferenceHost::HostNumber(const char16_t* name, uint32_t fallback) const {
  MString value = HostValue(name);
  return value.IsEmpty() ? fallback : value.ParseDigits();
}

uint32_t ReferenceHost::GetFlags() {
  return options_.flagsGiven ? options_.flags : HostNumber(u"Flags", options_.flags);
}

uint32_t ReferenceHost::GetInstallSource() {
  return options_.sourceGiven ? options_.installSource : HostNumber(u"InstallSource", options_.installSource);
}

uint32_t ReferenceHost::Kinds() {
  return GetFlags() & (ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi);
}

void ReferenceHost::SetAutoUpdateChoice(int32_t mode) {
  autoUpdateChoice_ = mode;
  Observe("SetAutoUpdateChoice", mode);
}

void ReferenceHost::StoreUpdateChoice(int32_t value) {
  storedUpdateChoice_ = value;
  Observe("StoreUpdateChoice", value);
}

MString& ReferenceHost::GetPayloadPath(MString& out) { return out = HostValue(u"PayloadPath"); }
bool ReferenceHost::ConflictCheckIsOptional() { return HostFlag(u"ConflictCheckIsOptional", false); }
bool ReferenceHost::ConflictsBlockInstall() { return HostFlag(u"ConflictsBlockInstall", true); }
bool ReferenceHost::IsRestartRequired() { return HostFlag(u"RestartRequired", false); }

void ReferenceHost::GetBrowserPaths(MString& controlName, MString& helperName) {
  controlName = HostValue(u"ActiveXFiles", 0);
  helperName = HostValue(u"ActiveXFiles", 1);
}

void ReferenceHost::GetPluginPaths(MString& controlName, MString& helperName) {
  controlName = HostValue(u"PluginFiles", 0);
  helperName = HostValue(u"PluginFiles", 1);
}

void ReferenceHost::GetPepperPaths(MString& controlName, MString& helperName) {
  controlName = HostValue(u"PepperFiles", 0);
  helperName = HostValue(u"PepperFiles", 1);
}

void ReferenceHost::GetControlPanelAppletName(MString& out) { out = HostValue(u"ControlPanelApplet"); }
void ReferenceHost::GetSettingsManagerFileName(MString& out) { out = HostValue(u"SettingsManager"); }
void ReferenceHost::GetUtilityPath(MString& out) { out = HostValue(u"UtilityPath"); }
void ReferenceHost::GetUpdateServiceFileName(MString& out) { out = HostValue(u"UpdateService"); }
void ReferenceHost::GetFeedbackServiceFileName(MString& out) { out = HostValue(u"FeedbackService"); }

void ReferenceHost::GetDownloadSettings(MString& out, uint8_t& flag) {
  out = HostValue(u"DownloadSettings");
  // The add-on anchor file: a relative path is the host's own folder's.
  const std::u16string_view path = out.View();
  const bool relative = !path.empty() && path[0] != u'\\' && path[0] != u'/' && path.find(u':') == path.npos;
  if (relative && !directory_.empty()) out = MString(std::u16string_view(directory_ + u"\\" + std::u16string(path)));
  flag = HostFlag(u"DownloadSettingsFlag", false) ? 1 : 0;
}

uint32_t ReferenceHost::GetOsClass() { return HostNumber(u"OsClass", 2); }
bool ReferenceHost::SkipsUpdateChoice() { return HostFlag(u"SkipsUpdateChoice", false); }
bool ReferenceHost::AnalyticsAllowed() { return HostFlag(u"AnalyticsAllowed", false); }
uint32_t ReferenceHost::GetSessionMode() { return HostNumber(u"SessionMode", 0); }

MString& ReferenceHost::GetPreviousActiveXVersion(MString& out) { return out = HostValue(u"PreviousActiveXVersion"); }
MString& ReferenceHost::GetPreviousPluginVersion(MString& out) { return out = HostValue(u"PreviousPluginVersion"); }
MString& ReferenceHost::GetPreviousPepperVersion(MString& out) { return out = HostValue(u"PreviousPepperVersion"); }
MString& ReferenceHost::GetTaskCommandPath(MString& out) { return out = HostValue(u"TaskCommandPath"); }

bool ReferenceHost::GetUpdateDialogData(MStringList& properties) {
  // "UpdateDialogData 0" stands for a host that has no offer to describe.
  if (!HostFlag(u"UpdateDialogData", true)) return false;
  // Only what the settings hold: an absent property keeps the panel's default.
  struct Property {
    const char16_t* key;
    const char16_t* setting;
  };
  for (const Property& property : {Property{u"message", u"UpdateMessage"}, Property{u"size", u"UpdateSize"},
                                   Property{u"autoUpdateMode", u"AutoUpdateMode"}}) {
    MString key(u"Host.");
    key.Append(property.setting);
    const SettingsNode* node = FindSetting(settings_, key);
    // One entry per value, in order: "size" gives the width, then the height.
    for (const SettingsNode* value = node ? node->values : nullptr; value; value = value->next)
      properties.Add(MString(property.key), value->name);
  }
  return true;
}

std::string ReferenceHost::FormatLog() {
  std::string lines;
  for (int32_t i = 0; i < log_.Count(); ++i) {
    MString text, line;
    log_.Text(text, i);
    log_.Format(line, this, log_.Severity(i), log_.Code(i), text, 0);
    lines += line.ToUtf8() + "\n";
  }
  return lines;
}

}  // namespace SASM
