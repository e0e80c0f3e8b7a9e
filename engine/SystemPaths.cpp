#include "engine/SystemPaths.h"

#include "engine/VendorIdentity.h"

namespace SASM {

bool SystemPaths::GetSystem32Path(MString& path) const {
  std::u16string directory;
  bool found = platform_.system->IsWow64Process() ? platform_.system->GetSystemWow64Directory(directory)
                                                   : platform_.system->GetSystemDirectory(directory);
  if (!found) return false;
  path = MString(std::u16string_view(directory));
  return true;
}

bool SystemPaths::GetProductDirectory(MString& path) const {
  std::u16string roaming;
  if (!platform_.system->GetFolderPath(Csidl::kAppData, roaming)) return false;
  path = MString(std::u16string_view(roaming));
  path.Append(u"\\Halcyonics\\Lumen Player\\").Append(Vendor::kSettingsDirectory).Append(u"\\bin");
  return true;
}

}  // namespace SASM
