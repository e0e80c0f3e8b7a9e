#pragma once
// Where an add-on product lives: one folder per product, holding its
// executable (named after the product) and its digest.s.
#include <string>

#include "engine/Platform.h"

namespace SASM {

class ProductFolders {
 public:
  // 0: the per-user product directory; 1: the machine's add-ins folder.
  enum Choice : int32_t { kPerUser = 0, kMachine = 1 };

  explicit ProductFolders(const Platform& platform) : platform_(platform) {}

  // The executable of the product called name; false when the folder cannot be found.
  bool ExecutablePath(std::u16string_view name, int32_t choice, std::u16string& path) const;
  // The path up to its last "\", without it.
  static std::u16string FolderOf(std::u16string_view path);

 private:
  Platform platform_;
};

}  // namespace SASM
