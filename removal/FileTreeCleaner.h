#pragma once
// Deletion of files by age and of whole directory trees. Nothing here reports:
// the results are in the answers and in what is left on disk.
#include <cstdint>

#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class FileTreeCleaner {
 public:
  // Room of the search pattern, its terminator included.
  static constexpr int32_t kPatternRoom = 260;
  static constexpr uint64_t kFileTimeUnitsPerSecond = 10000000;

  explicit FileTreeCleaner(const Platform& platform) : platform_(platform) {}

  // Deletes, through the whole tree, files older than minAge and younger than maxAge
  // seconds (both bounds excluded) and the folders that end up empty. emptied says
  // whether nothing is left. False when the time or a directory's first search failed.
  bool DeleteFilesByAge(const MString& directory, uint32_t minAge, uint32_t maxAge, bool& emptied);
  // The same for a UTF-8 directory, which goes too when the tree is emptied.
  bool DeleteFilesByAgeUtf8(const char* directory, uint32_t minAge, uint32_t maxAge, bool& emptied);
  // Everything under the directory, then the directory. False when the directory
  // stays; otherwise the answer of the last subdirectory visited.
  bool DeleteTree(const MString& directory);

 private:
  bool IsDirectory(const MString& path);

  Platform platform_;
};

}  // namespace SASM
