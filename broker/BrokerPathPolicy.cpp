#include "broker/BrokerPathPolicy.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engine/ISystem.h"
#include "engine/VendorIdentity.h"

namespace SASM {
namespace {

constexpr char16_t kShellFoldersKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr uint32_t kShellFolderValueBytes = 520;
constexpr int32_t kCsidlSystemX86 = 41;

constexpr uint32_t kFullPathCapacity = 1040;
constexpr int kCanonicalRounds = 100;
constexpr uint32_t kMaxPath = 260;
// The platform's own limit for a path in its long form.
constexpr uint32_t kMaxLongPath = 32768;

constexpr std::u16string_view kLocalAppDataToken = u"<LOCAL_APPDATA>";
constexpr std::u16string_view kLongPrefix = u"\\\\?\\";
constexpr std::u16string_view kLongUncPrefix = u"\\\\?\\UNC\\";
constexpr std::u16string_view kGlobalRootPrefix = u"\\\\?\\GLOBALROOT\\";
constexpr size_t kGlobalRootSkip = 14;  // keeps the object path's leading backslash
constexpr std::u16string_view kObjectPrefix = u"\\??\\";
constexpr std::u16string_view kForbiddenCharacters = u"*?\"|<>/";
constexpr std::array<std::u16string_view, 4> kDotPatterns = {u"\\.", u".\\", u"\\%2E", u"%2E\\"};

constexpr std::u16string_view kPlayerDataSuffix = u"\\Halcyonics\\Lumen Player";
constexpr std::u16string_view kVendorSuffix = u"\\Corva\\Lumen Player";
constexpr std::u16string_view kSystemPlayerSuffix = u"\\HALCYONS\\LUMEN";
constexpr std::u16string_view kSharedObjectsSuffix = u"\\#SHAREDOBJECTS";
constexpr std::u16string_view kSupportSysSuffix = u"\\SUPPORT\\LUMENPLAYER\\SYS";

constexpr uint32_t kSymbolicLinkQueryAccess = 0xF0001;  // SYMBOLIC_LINK_ALL_ACCESS
constexpr uint32_t kObjCaseInsensitive = 64;
constexpr uint16_t kLinkTargetBytes = 0x104;
constexpr uint32_t kOpenExisting = 3;
constexpr uint32_t kOpenReparseFlags = 0x2200000;  // backup semantics, open reparse point
constexpr uint32_t kGetReparsePoint = 0x900A8;     // FSCTL_GET_REPARSE_POINT
constexpr size_t kReparseBufferBytes = 0x4000;
constexpr uint32_t kTagSymbolicLink = 0xA000000C;
constexpr uint32_t kTagMountPoint = 0xA0000003;
constexpr size_t kMaxLinkHistory = 16;
constexpr int32_t kFailure = static_cast<int32_t>(0x80004005);

bool IsSlash(char16_t unit) { return unit == u'\\' || unit == u'/'; }

bool Contains(std::u16string_view text, std::u16string_view part) { return text.find(part) != text.npos; }

// Cuts the last component and the separator before it; a text without one stays.
std::u16string_view WithoutLastComponent(std::u16string_view text) {
  size_t slash = text.find_last_of(u"\\/");
  return slash == text.npos ? text : text.substr(0, slash);
}

bool UnderRoot(std::u16string_view path, const MString& root) {
  return !root.IsNull() && BrokerPathPolicy::IsPathUnderRoot(std::u16string(path).c_str(), root.Data());
}

// The parts of a path as the C runtime splits them, with its fixed buffers:
// drive 3, the others 256 units, terminator included.
struct PathParts {
  std::u16string drive;
  std::u16string directory;
  std::u16string name;
  std::u16string extension;
};

bool SplitPath(std::u16string_view path, PathParts& parts) {
  size_t position = 0;
  if (path.size() >= 2 && path[1] == u':') {
    parts.drive = path.substr(0, 2);
    position = 2;
  }
  size_t slash = path.find_last_of(u"\\/");
  if (slash != path.npos && slash >= position) {
    parts.directory = path.substr(position, slash + 1 - position);
    position = slash + 1;
  }
  std::u16string_view rest = path.substr(position);
  size_t dot = rest.rfind(u'.');
  parts.name = rest.substr(0, dot);
  parts.extension = dot == rest.npos ? std::u16string_view() : rest.substr(dot);
  // Components that would not fit those buffers make the split fail.
  return parts.directory.size() < 256 && parts.name.size() < 256 && parts.extension.size() < 256;
}

uint32_t ReadLittleEndian(const std::vector<uint8_t>& data, size_t offset, size_t size) {
  uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) value |= static_cast<uint32_t>(data[offset + i]) << (8 * i);
  return value;
}

// Closes a platform handle when the scope ends.
class PlatformHandle {
 public:
  PlatformHandle(PathPlatform& platform, PathPlatform::Handle handle) : platform_(platform), handle_(handle) {}
  PlatformHandle(const PlatformHandle&) = delete;
  PlatformHandle& operator=(const PlatformHandle&) = delete;
  ~PlatformHandle() { platform_.CloseHandle(handle_); }
  PathPlatform::Handle get() const { return handle_; }

 private:
  PathPlatform& platform_;
  PathPlatform::Handle handle_;
};

}  // namespace

BrokerPathPolicy::BrokerPathPolicy(PathPlatform& platform, bool serverMode)
    : platform_(platform), serverMode_(serverMode) {}

MString BrokerPathPolicy::ExpandBrokerPath(const char16_t* path) {
  if (!path) return {};
  std::u16string_view view(path);
  if (!view.starts_with(kLocalAppDataToken)) return MString(view);
  const MString& local = LocalAppData();
  if (local.IsNull()) return MString(view);
  std::u16string expanded = local.ToU16();
  expanded.append(view.substr(kLocalAppDataToken.size()));
  // The expansion has a buffer of 260 units; a path that doesn't fit keeps its
  // token, which sanitising then refuses.
  if (expanded.size() >= kMaxPath) return MString(view);
  return MString(expanded);
}

MString BrokerPathPolicy::SanitizePath(const char16_t* path, bool upper) {
  if (!path) return {};

  // Canonicalise until the platform stops changing the path, so that no second
  // canonicalisation later (by CreateFileW) can turn it into something else.
  std::u16string source(path);
  std::u16string previous;
  for (int round = 0; round < kCanonicalRounds; ++round) {
    std::u16string full;
    uint32_t length = platform_.GetFullPathName(source.c_str(), kFullPathCapacity, full);
    if (length < 1 || length > kFullPathCapacity) return {};
    if (round > 0 && full == previous) break;
    previous = full;
    source = std::move(full);
  }

  std::u16string upperCopy = previous;
  if (!platform_.CharUpperBuff(upperCopy)) return {};
  std::u16string result = upper ? upperCopy : previous;
  std::u16string_view upperView(upperCopy);
  if (upperView.starts_with(kLongUncPrefix)) {
    result.replace(0, kLongUncPrefix.size(), u"\\\\");
  } else if (upperView.starts_with(kLongPrefix)) {
    result.erase(0, kLongPrefix.size());
  }

  if (result.find_first_of(kForbiddenCharacters) != result.npos) return {};

  // Only a drive letter may carry a colon: this is what keeps stream names out.
  size_t colons = std::count(result.begin(), result.end(), u':');
  if (colons > 1) return {};
  if (colons == 1) {
    auto isLetter = [](char16_t unit) { return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z'); };
    bool driveForm = result.size() >= 2 && isLetter(result[0]) && result[1] == u':';
    bool longDriveForm = result.size() >= 6 && std::u16string_view(result).starts_with(kLongPrefix) &&
                         isLetter(result[4]) && result[5] == u':';
    if (!driveForm && !longDriveForm) return {};
  }
  if (!upper) return MString(result);

  // No component may begin or end with a dot, so ".." can't survive either.
  for (std::u16string_view pattern : kDotPatterns) {
    if (Contains(result, pattern)) return {};
  }
  return MString(result);
}

bool BrokerPathPolicy::IsPathUnderRoot(const char16_t* path, const char16_t* root) {
  if (!path || !root) return false;
  size_t i = 0;
  for (; root[i] != 0; ++i) {
    if (path[i] != root[i]) return false;
  }
  return path[i] == 0 || IsSlash(path[i]);
}

bool BrokerPathPolicy::HasAllowedExtension(const char16_t* path) {
  if (!path) return false;
  std::u16string_view view(path);
  for (std::u16string_view extension : kAllowedExtensions) {
    if (view.ends_with(extension)) return true;
  }
  return false;
}

bool BrokerPathPolicy::IsUncServerRoot(const char16_t* path) {
  if (!path) return false;
  std::u16string_view view(path);
  if (view.size() < 3 || !IsSlash(view[0]) || !IsSlash(view[1]) || IsSlash(view[2])) return false;
  size_t slash = view.find_first_of(u"\\/", 2);
  return slash == view.npos || slash == view.size() - 1;
}

bool BrokerPathPolicy::ResolveOneLink(const char16_t* path, MString& target) {
  target = MString();
  if (!path) return true;
  std::u16string current(path);
  std::u16string upperCopy = current;
  if (!platform_.CharUpperBuff(upperCopy)) return true;
  if (std::u16string_view(upperCopy).starts_with(kGlobalRootPrefix)) current.erase(0, kGlobalRootSkip);

  std::u16string found;
  PathPlatform::Handle link = nullptr;
  if (platform_.OpenSymbolicLinkObject(current.c_str(), kSymbolicLinkQueryAccess, kObjCaseInsensitive, link)) {
    PlatformHandle owned(platform_, link);
    // A link whose target can't be read leaves the path to be judged as it stands.
    if (!platform_.QuerySymbolicLinkObject(owned.get(), kLinkTargetBytes, found)) return true;
  } else {
    PathParts parts;
    // A component too long for the split's buffers can't be walked; refuse it.
    if (!SplitPath(current, parts)) return false;
    const std::u16string& directory = parts.directory;
    std::u16string tail = parts.name + parts.extension;
    size_t cut = directory.rfind(u'\\');
    while (cut != directory.npos) {
      std::u16string level = parts.drive + (cut == 0 ? std::u16string(u"\\") : directory.substr(0, cut));
      uint32_t attributes = platform_.GetFileAttributes(level.c_str());
      if (attributes == PathAttribute::kInvalid) {
        // A bare server name has no attributes to read but nothing to resolve either.
        return IsUncServerRoot(level.c_str());
      }
      if (attributes & PathAttribute::kReparsePoint) {
        if (!ReadReparseTarget(level, directory.substr(cut) + tail, tail.size(), found)) return false;
        break;
      }
      if (cut == 0) break;
      cut = directory.rfind(u'\\', cut - 1);
    }
    if (found.empty()) return true;
  }

  if (std::u16string_view(found).starts_with(kObjectPrefix)) found.erase(0, kObjectPrefix.size());
  target = MString(found);
  return true;
}

bool BrokerPathPolicy::ReadReparseTarget(const std::u16string& level, const std::u16string& remainder,
                                         size_t nameLength, std::u16string& target) {
  PathPlatform::Handle file = nullptr;
  if (!platform_.CreateFile(level.c_str(), 0, 0, kOpenExisting, kOpenReparseFlags, file)) return false;
  PlatformHandle owned(platform_, file);

  std::vector<uint8_t> data(kReparseBufferBytes + 2 * nameLength);
  uint32_t returned = 0;
  // A reparse point that can't be read can't be judged by its target.
  if (!platform_.DeviceIoControl(owned.get(), kGetReparsePoint, data, returned)) return false;
  size_t available = std::min<size_t>(returned, data.size());
  if (available < 8) return true;

  size_t pathBuffer = 0;
  uint32_t tag = ReadLittleEndian(data, 0, 4);
  if (tag == kTagSymbolicLink) {
    pathBuffer = 20;
  } else if (tag == kTagMountPoint) {
    pathBuffer = 16;
  } else {
    return true;
  }
  if (available < pathBuffer) return true;
  size_t offset = ReadLittleEndian(data, 8, 2);
  size_t length = ReadLittleEndian(data, 10, 2);
  // The name must lie inside what the platform returned.
  if (pathBuffer + offset + length > available) return true;
  std::u16string substitute;
  for (size_t i = 0; i + 1 < length; i += 2) {
    substitute.push_back(static_cast<char16_t>(ReadLittleEndian(data, pathBuffer + offset + i, 2)));
  }
  target = substitute + remainder;
  return true;
}

bool BrokerPathPolicy::ResolveAllLinks(const char16_t* path, MString& target) {
  target = MString();
  std::vector<MString> history;
  MString current = path ? MString(path) : MString();
  MString last;
  for (;;) {
    MString found;
    if (!ResolveOneLink(current.Data(), found)) return false;
    if (found.IsNull()) {
      target = last;
      return true;
    }
    // A cycle, or a chain too long: go on as if there were no link, with the path as it was.
    if (found == current || std::find(history.begin(), history.end(), found) != history.end()) return true;
    if (history.size() >= kMaxLinkHistory) return true;
    if (!last.IsNull()) history.push_back(last);
    last = found;
    current = found;
  }
}

MString BrokerPathPolicy::TryGetLongPath(const char16_t* path) {
  if (!path) return {};
  PathParts parts;
  if (!SplitPath(path, parts)) return {};
  std::u16string shortDirectory = parts.drive + parts.directory;
  std::u16string longDirectory;
  uint32_t length = platform_.GetLongPathName(shortDirectory.c_str(), kMaxPath, longDirectory);
  if (length == 0 || length >= kMaxPath) return {};
  if (longDirectory.size() == shortDirectory.size()) return {};
  // Joined in the same 260 units; what doesn't fit is no result.
  std::u16string result = longDirectory + parts.name;
  if (result.size() >= kMaxPath) return {};
  result += parts.extension;
  if (result.size() >= kMaxPath) return {};
  return MString(result);
}

MString BrokerPathPolicy::ShellFolder(int32_t csidl, const char16_t* fallbackValue) {
  std::u16string path;
  if (!platform_.GetFolderPath(csidl, path)) {
    path.clear();
    if (!fallbackValue || !platform_.ReadUserString(kShellFoldersKey, fallbackValue, kShellFolderValueBytes, path)) {
      return {};
    }
  }
  if (!path.empty() && IsSlash(path.back())) path.pop_back();
  return MString(path);
}

const MString& BrokerPathPolicy::RoamingAppData() {
  if (roamingAppData_.IsNull()) roamingAppData_ = ShellFolder(Csidl::kAppData, u"AppData");
  return roamingAppData_;
}

const MString& BrokerPathPolicy::LocalAppData() {
  if (localAppData_.IsNull()) localAppData_ = ShellFolder(Csidl::kLocalAppData, u"Local AppData");
  return localAppData_;
}

const MString& BrokerPathPolicy::PlayerDataDir() {
  if (playerDataDir_.IsNull()) {
    const MString& base = enableLocalAppData_ ? LocalAppData() : RoamingAppData();
    if (!base.IsNull()) playerDataDir_ = MString(base.ToU16().append(kPlayerDataSuffix));
  }
  return playerDataDir_;
}

const MString& BrokerPathPolicy::VendorDir() {
  if (vendorDir_.IsNull()) {
    const MString& base = RoamingAppData();
    if (!base.IsNull()) vendorDir_ = MString(base.ToU16().append(kVendorSuffix));
  }
  return vendorDir_;
}

const MString& BrokerPathPolicy::VendorSettingsDir() {
  if (vendorSettingsDir_.IsNull()) {
    const MString& base = PlayerDataDir();
    if (!base.IsNull()) vendorSettingsDir_ = MString(base.ToU16() + u"\\" + Vendor::kSettingsDirectory);
  }
  return vendorSettingsDir_;
}

const MString& BrokerPathPolicy::GetTempRoot() {
  if (tempDir_.IsNull()) {
    std::u16string path;
    uint32_t length = platform_.GetTempPath(kMaxPath, path);
    if (length == 0 || length > kMaxPath) return tempDir_;
    // The server's own temp directory is not the sandbox's: name the low-integrity one.
    if (serverMode_ && !std::u16string_view(path).ends_with(u"\\Low\\")) path += u"Low\\";
    MString longPath = TryGetLongPath(path.c_str());
    std::u16string result = longPath.IsNull() ? path : longPath.ToU16();
    if (!result.empty() && IsSlash(result.back())) result.pop_back();
    tempDir_ = MString(result);
  }
  return tempDir_;
}

bool BrokerPathPolicy::FillRoot(MString& root, const MString& source) {
  if (root.IsNull() && !source.IsNull()) root = SanitizePath(source.Data(), true);
  return !root.IsNull();
}

bool BrokerPathPolicy::FillSystemRoot(MString& root, int32_t csidl) {
  if (root.IsNull()) {
    MString folder = ShellFolder(csidl, nullptr);
    MString sanitized = SanitizePath(folder.Data(), true);
    if (!sanitized.IsNull()) root = MString(sanitized.ToU16().append(kSystemPlayerSuffix));
  }
  return !root.IsNull();
}

bool BrokerPathPolicy::IsWritableDataPath(const char16_t* path, bool requireExtension, bool* sharedFlagOut) {
  if (sharedFlagOut) *sharedFlagOut = false;
  if (!path) return false;
  bool rootsReady = FillRoot(vendorRoot_, VendorDir());
  rootsReady &= FillRoot(playerDataRoot_, PlayerDataDir());
  rootsReady &= FillRoot(vendorSettingsRoot_, VendorSettingsDir());
  rootsReady &= FillRoot(tempRoot_, GetTempRoot());
  if (!rootsReady) return false;

  MString candidate = SanitizePath(path, true);
  if (candidate.IsNull()) return false;
  MString target;
  if (!ResolveAllLinks(candidate.Data(), target)) return false;
  // The target is judged as the link gave it, without sanitising it again.
  if (!target.IsNull()) candidate = target;
  // Judged on the aliases as given: the long form below may keep some and change case.
  const bool settingsAlias = IsSettingsAliasPath(candidate.Data());
  MString longPath = TryGetLongPath(candidate.Data());
  if (!longPath.IsNull()) candidate = longPath;

  std::u16string_view view = candidate.View();
  bool underPlayerData = UnderRoot(view, playerDataRoot_);
  bool underVendor = UnderRoot(view, vendorRoot_);
  bool underTemp = UnderRoot(view, tempRoot_);
  bool allowed = underPlayerData || underVendor || underTemp;
  // The player's settings are off limits even inside its data root.
  if (allowed && UnderRoot(view, vendorSettingsRoot_)) allowed = false;
  if (allowed && (underPlayerData || underVendor) && requireExtension) {
    allowed = HasAllowedExtension(candidate.Data());
  }
  if (settingsAlias) allowed = false;
  if (sharedFlagOut) *sharedFlagOut = IsSharedObjectsPath(candidate.Data());
  return allowed;
}

bool BrokerPathPolicy::IsSharedObjectsPath(const char16_t* path) {
  if (sharedObjectsRoot_.IsNull() && supportSysRoot_.IsNull() && !playerDataRoot_.IsNull()) {
    sharedObjectsRoot_ = MString(playerDataRoot_.ToU16().append(kSharedObjectsSuffix));
    std::u16string domain(Vendor::kSettingsDirectory);
    platform_.CharUpperBuff(domain);
    supportSysRoot_ = MString(playerDataRoot_.ToU16() + u"\\" + domain + std::u16string(kSupportSysSuffix));
  }
  if (!path) return false;
  if (UnderRoot(path, sharedObjectsRoot_)) return true;
  if (supportSysRoot_.IsNull()) return false;
  std::u16string_view view(path);
  if (!view.starts_with(supportSysRoot_.View())) return false;
  std::u16string_view rest = view.substr(supportSysRoot_.Length());
  std::u16string_view folder = rest.find(u'\\') == rest.npos ? std::u16string_view() : WithoutLastComponent(rest);
  return folder.size() > 2 && folder.starts_with(u"\\#");
}

bool BrokerPathPolicy::IsCreatableDirectory(const char16_t* path) {
  if (!path) return false;
  if (!FillRoot(roamingRoot_, RoamingAppData())) return false;
  if (enableLocalAppData_ && !FillRoot(localRoot_, LocalAppData())) return false;
  MString candidate = SanitizePath(path, true);
  if (candidate.IsNull()) return false;

  auto underSuffixedRoot = [&](const MString& root) {
    for (std::u16string_view suffix : kAllowedDirectorySuffixes) {
      if (UnderRoot(candidate.View(), MString(root.ToU16().append(suffix)))) return true;
    }
    return false;
  };
  if (IsSettingsAliasPath(candidate.Data())) return false;
  if (underSuffixedRoot(roamingRoot_)) return true;
  return enableLocalAppData_ && underSuffixedRoot(localRoot_);
}

bool BrokerPathPolicy::IsSearchablePath(const char16_t* path) {
  if (!path) return false;
  std::u16string_view view(path);
  uint32_t attributes = 0;
  if (platform_.GetFileAttributesEx(path, attributes) && !(attributes & PathAttribute::kDirectory)) {
    view = WithoutLastComponent(view);
  } else {
    // The pattern has to go before sanitising, which refuses wildcards.
    size_t wildcard = view.find_first_of(u"*?");
    if (wildcard != view.npos) view = WithoutLastComponent(view.substr(0, wildcard));
  }
  MString candidate = SanitizePath(std::u16string(view).c_str(), true);
  if (candidate.IsNull()) return false;
  if (IsSettingsAliasPath(candidate.Data())) return false;
  FillRoot(roamingRoot_, RoamingAppData());
  FillRoot(tempRoot_, GetTempRoot());
  return UnderRoot(candidate.View(), roamingRoot_) || IsSystemPlayerPath(candidate.Data()) ||
         UnderRoot(candidate.View(), tempRoot_);
}

bool BrokerPathPolicy::IsSystemPlayerPath(const char16_t* path) {
  bool ready = FillSystemRoot(systemPlayerRoot_, Csidl::kSystem);
  ready &= FillSystemRoot(systemWow64PlayerRoot_, kCsidlSystemX86);
  if (!ready || !path) return false;
  return IsPathUnderRoot(path, systemPlayerRoot_.Data()) || IsPathUnderRoot(path, systemWow64PlayerRoot_.Data());
}

bool BrokerPathPolicy::IsSettingsAliasPath(const char16_t* path) {
  // Aliases always hold a tilde; a path without one is left to the other tests untouched.
  if (!path || std::u16string_view(path).find(u'~') == std::u16string_view::npos) return false;
  MString sanitized = SanitizePath(path, true);
  if (sanitized.IsNull() || !FillRoot(vendorSettingsRoot_, VendorSettingsDir())) return true;

  // Expanded one component at a time from the top, the last one included, in the
  // platform's long-path limit rather than 260 units: an alias is what hides the length.
  std::u16string_view rest = sanitized.View();
  size_t rootEnd = rest.starts_with(u"\\\\") ? rest.find(u'\\', rest.find(u'\\', 2) + 1) : rest.find(u'\\');
  if (rootEnd == rest.npos) return false;
  std::u16string expanded(rest.substr(0, rootEnd));
  rest.remove_prefix(rootEnd);
  while (!rest.empty()) {
    rest.remove_prefix(1);
    size_t end = std::min(rest.find(u'\\'), rest.size());
    std::u16string next = expanded + u"\\" + std::u16string(rest.substr(0, end));
    rest.remove_prefix(end);
    if (next.find(u'~', expanded.size()) != std::u16string::npos) {
      std::u16string longForm;
      uint32_t length = platform_.GetLongPathName(next.c_str(), kMaxLongPath, longForm);
      if (length == 0) {
        // Nothing of that name exists, so nothing below it does: it is no alias.
        if (platform_.GetFileAttributes(next.c_str()) != PathAttribute::kInvalid) return true;
        expanded = next + std::u16string(rest);
        break;
      }
      if (length >= kMaxLongPath || longForm.empty()) return true;
      next = longForm;
    }
    expanded = next;
  }
  // The disk's case may differ from the root's.
  if (!platform_.CharUpperBuff(expanded)) return true;
  return UnderRoot(expanded, vendorSettingsRoot_);
}

int32_t BrokerPathPolicy::BrokerIsWritablePath(const char16_t* p_path, int32_t p_alsoCheckExtension) {
  MString expanded = ExpandBrokerPath(p_path);
  return IsWritableDataPath(expanded.Data(), p_alsoCheckExtension == 1, nullptr) ? 0 : kFailure;
}

}  // namespace SASM
