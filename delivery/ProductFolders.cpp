#include "delivery/ProductFolders.h"

#include "engine/SystemPaths.h"

namespace SASM {

bool ProductFolders::ExecutablePath(std::u16string_view name, int32_t choice, std::u16string& path) const {
  std::u16string folder;
  if (choice == kMachine) {
    // The pieces are joined as they stand, doubled separators and all.
    if (!platform_.system->GetFolderPath(Csidl::kProgramFiles, folder)) return false;
    folder += u"\\Corva\\";
    folder += u"\\Lumen Player\\";
    folder += u"\\AddIns\\";
  } else {
    MString products;
    if (!SystemPaths(platform_).GetProductDirectory(products)) return false;
    folder = products.ToU16() + u"\\";
  }
  path = folder;
  path.append(name).append(u"\\").append(name).append(u".exe");
  return true;
}

std::u16string ProductFolders::FolderOf(std::u16string_view path) {
  const size_t slash = path.rfind(u'\\');
  return std::u16string(slash == std::u16string_view::npos ? std::u16string_view() : path.substr(0, slash));
}

}  // namespace SASM
