#pragma once
// Where the player and its data live, composed over the platform seams. Every
// location is bounded by 260 characters; one that can't be found answers false.
#include <string_view>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class SystemPaths {
 public:
  static constexpr int32_t kMaxPath = 260;
  static constexpr char16_t kShellFoldersKey[] =
      u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

  explicit SystemPaths(const Platform& platform) : platform_(platform) {}

  // The directory of 32-bit system files. On a 64-bit process the plain system
  // directory answers, as the WOW64 test fails there.
  bool GetSystem32Path(MString& path) const;
  // The directory that holds hms.cfg's folder: the WOW64 directory whenever the
  // platform has one, so a 64-bit system reads the 32-bit system directory's file.
  bool GetConfigSystemDirectory(MString& path) const;
  // GetConfigSystemDirectory followed by "\Halcyons\Lumen\hms.cfg".
  bool GetSystemConfigFilePath(MString& path) const;

  // Roaming (CSIDL 26) or local (CSIDL 28) folder; when the shell can't answer,
  // the current user's "AppData" or "Local AppData" value under Shell Folders.
  bool GetPlayerRoots(bool local, MString& root) const;
  // The local or roaming root followed by "\Halcyonics\Lumen Player".
  bool GetPlayerDataRoot(bool enableLocalAppData, MString& path) const;
  // Always the roaming root, followed by "\Corva\Lumen Player".
  bool GetVendorDataRoot(MString& path) const;
  // The player data root, "\" and the vendor settings directory.
  bool GetSettingsDirectory(bool enableLocalAppData, MString& path) const;
  // The settings directory, "\bin\", the package name and "\digest.s".
  bool GetDigestFile(bool enableLocalAppData, const MString& package, MString& path) const;
  // Program Files (CSIDL 38) joined with "\Corva\", "\Lumen Player\" and "\AddIns\".
  bool GetAddInsDirectory(MString& path) const;
  // The temporary directory; for Vista and later its "Low\" sub-directory, in long form when it can be made.
  bool GetLowIntegrityRoot(bool vistaOrLater, MString& path) const;
  // Roaming followed by "\Corva\Lumen Player\" and the named folder.
  bool GetAssetCacheDirectory(MString& path) const;
  bool GetCacheDirectory(MString& path) const;
  bool GetPrivateDataDirectory(MString& path) const;
  bool GetIconCacheDirectory(MString& path) const;
  // Roaming (CSIDL 26) followed by "\Halcyonics\Lumen Player\", the vendor settings directory and "\bin".
  bool GetProductDirectory(MString& path) const;
  // The file manager's form of the player data root: the folder is asked for with
  // the create flag, the fallback value is read as narrow text in the system code
  // page and loses one trailing "\" or "/", then "\Halcyonics\Lumen Player" follows.
  bool GetPlayerDirectory(bool enableLocalAppData, MString& path) const;
  // A bare library name (no "\") is joined to the System folder (CSIDL 37), so
  // that it loads from there only; a name with a backslash stays as it is.
  bool GetShellLibraryPath(std::u16string_view library, MString& path) const;

 private:
  bool GetRoamingChild(std::u16string_view child, MString& path) const;

  Platform platform_;
};

}  // namespace SASM
