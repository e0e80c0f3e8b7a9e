#pragma once
// Decides which paths a (possibly hostile) broker client may write, delete,
// list or create. Pure string logic over a few cached roots, plus a walk of the
// file system for links; reading is not decided here.
#include <array>
#include <cstdint>
#include <string_view>

#include "broker/PathPlatform.h"
#include "engine/MString.h"

namespace SASM {

class BrokerPathPolicy {
 public:
  // The extensions the player's own data may have, upper-case with the dot.
  // ".DLL" is on purpose: the file family sniffs what is written instead.
  static constexpr std::array<std::u16string_view, 25> kAllowedExtensions = {
      u".TXT", u".SOR", u".SOL", u".SSR", u".SSL",       u".SXX", u".XML", u".AHD", u".DAT",
      u".TWZ", u".HEU", u".TMP", u".S",   u".DIRECTORY", u".PNG", u".SSS", u".GS",  u".MGD",
      u".LKG", u".LIC", u".VCH", u".DLL", u".META",      u".ICO", u".JSON"};
  static constexpr std::array<std::u16string_view, 2> kAllowedDirectorySuffixes = {u"\\HALCYONICS", u"\\CORVA"};

  // serverMode makes the temp root the low-integrity sub-directory.
  BrokerPathPolicy(PathPlatform& platform, bool serverMode);
  BrokerPathPolicy(const BrokerPathPolicy&) = delete;
  BrokerPathPolicy& operator=(const BrokerPathPolicy&) = delete;

  // Read once per broker object, before the first test.
  void SetEnableLocalAppData(bool enable) { enableLocalAppData_ = enable; }
  bool EnableLocalAppData() const { return enableLocalAppData_; }

  // Replaces a leading "<LOCAL_APPDATA>" by the local application data folder.
  MString ExpandBrokerPath(const char16_t* path);
  // Canonical, checked form of a path, or null when refused.
  MString SanitizePath(const char16_t* path, bool upper);
  bool IsWritableDataPath(const char16_t* path, bool requireExtension, bool* sharedFlagOut);
  bool IsCreatableDirectory(const char16_t* path);
  bool IsSearchablePath(const char16_t* path);
  bool IsSharedObjectsPath(const char16_t* path);
  bool IsSystemPlayerPath(const char16_t* path);
  // Only meaningful on upper-cased paths: the comparison keeps case.
  static bool HasAllowedExtension(const char16_t* path);
  static bool IsPathUnderRoot(const char16_t* path, const char16_t* root);
  static bool IsUncServerRoot(const char16_t* path);
  // False refuses the path; a null target means there is nothing to resolve.
  bool ResolveAllLinks(const char16_t* path, MString& target);
  bool ResolveOneLink(const char16_t* path, MString& target);
  // The path with 8.3 directory names made long, or null for no change.
  MString TryGetLongPath(const char16_t* path);
  // True when the path reaches the settings directory, or anything under it, through
  // an 8.3 alias in any component, or holds an alias that can't be expanded. Every
  // file method refuses such a path, whatever else it allows.
  bool IsSettingsAliasPath(const char16_t* path);
  // The question of the interface: 0 writable, 0x80004005 not.
  int32_t BrokerIsWritablePath(const char16_t* p_path, int32_t p_alsoCheckExtension);

 private:
  MString ShellFolder(int32_t csidl, const char16_t* fallbackValue);
  const MString& RoamingAppData();
  const MString& LocalAppData();
  const MString& PlayerDataDir();
  const MString& VendorDir();
  const MString& VendorSettingsDir();
  const MString& GetTempRoot();
  bool FillRoot(MString& root, const MString& source);
  bool FillSystemRoot(MString& root, int32_t csidl);
  bool ReadReparseTarget(const std::u16string& level, const std::u16string& remainder, size_t nameLength,
                         std::u16string& target);

  PathPlatform& platform_;
  bool serverMode_;
  bool enableLocalAppData_ = false;

  // As the platform gave them.
  MString localAppData_;
  MString roamingAppData_;
  MString tempDir_;
  // Built from those.
  MString playerDataDir_;
  MString vendorDir_;
  MString vendorSettingsDir_;
  // Sanitised, upper-cased; every comparison is against these.
  MString roamingRoot_;
  MString localRoot_;
  MString tempRoot_;
  MString playerDataRoot_;
  MString vendorRoot_;
  MString vendorSettingsRoot_;
  MString systemPlayerRoot_;
  MString systemWow64PlayerRoot_;
  MString sharedObjectsRoot_;
  MString supportSysRoot_;
};

}  // namespace SASM
