#include "removal/FileTreeCleaner.h"

#include <string>
#include <vector>

namespace SASM {
namespace {

bool IsDotEntry(const std::u16string& name) { return name == u"." || name == u".."; }

// Proper UTF-8, as the player's paths are written (code page 65001); a broken sequence becomes U+FFFD.
MString DecodeUtf8(const char* text) {
  std::u16string units;
  auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  for (size_t i = 0; text[i];) {
    unsigned char lead = byte(i);
    size_t width = lead < 0x80 ? 1 : lead >= 0xC2 && lead < 0xE0 ? 2 : lead >= 0xE0 && lead < 0xF0 ? 3
                   : lead >= 0xF0 && lead < 0xF5                 ? 4
                                                                 : 0;
    uint32_t point = width == 1 ? lead : width == 2 ? lead & 0x1F : width == 3 ? lead & 0x0F : lead & 0x07;
    size_t n = 1;
    for (; width > 1 && n < width && (byte(i + n) & 0xC0) == 0x80; ++n) point = (point << 6) | (byte(i + n) & 0x3F);
    bool whole = width != 0 && n == width;
    bool shortest = width < 3 || (width == 3 ? point >= 0x800 : point >= 0x10000);
    if (!whole || !shortest || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) {
      units.push_back(0xFFFD);
      i += width == 0 ? 1 : n;
      continue;
    }
    if (point >= 0x10000) {
      units.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
    } else {
      units.push_back(static_cast<char16_t>(point));
    }
    i += width;
  }
  return MString(std::u16string_view(units));
}

MString Child(const MString& directory, const std::u16string& name) {
  MString path = directory;
  return path.Append(u"\\").Append(MString(std::u16string_view(name)));
}

}  // namespace

bool FileTreeCleaner::IsDirectory(const MString& path) {
  uint32_t attributes = 0;
  return platform_.files->GetAttributes(path.View(), attributes) == 0 && (attributes & FileAttribute::kDirectory);
}

bool FileTreeCleaner::DeleteFilesByAge(const MString& directory, uint32_t minAge, uint32_t maxAge, bool& emptied) {
  emptied = false;
  IFileSystem& files = *platform_.files;
  // Each level reads the clock afresh.
  uint64_t now = 0;
  if (!platform_.system->CurrentFileTime(now)) return false;
  std::vector<std::u16string> names;
  if (files.EnumerateDirectory(directory.View(), names) != 0) return false;

  const uint64_t youngest = minAge * kFileTimeUnitsPerSecond;
  const uint64_t oldest = maxAge * kFileTimeUnitsPerSecond;
  bool remains = false;
  for (const std::u16string& name : names) {
    if (IsDotEntry(name)) continue;
    MString path = Child(directory, name);
    if (IsDirectory(path)) {
      bool subEmptied = false;
      if (!DeleteFilesByAge(path, minAge, maxAge, subEmptied) || !subEmptied) remains = true;
      else if (files.RemoveDirectory(path.View()) != 0) remains = true;
      continue;
    }
    uint64_t written = 0;
    if (files.GetLastWriteTime(path.View(), written) != 0) {
      remains = true;
      continue;
    }
    // Unsigned on purpose: a file stamped in the future is very old by this measure.
    uint64_t age = now - written;
    if (age <= youngest || age >= oldest) remains = true;
    else if (files.Delete(path.View()) != 0) remains = true;
  }
  emptied = !remains;
  return true;
}

bool FileTreeCleaner::DeleteFilesByAgeUtf8(const char* directory, uint32_t minAge, uint32_t maxAge, bool& emptied) {
  emptied = false;
  if (!directory) return false;
  MString wide = DecodeUtf8(directory);
  if (!DeleteFilesByAge(wide, minAge, maxAge, emptied)) return false;
  if (emptied) platform_.files->RemoveDirectory(wide.View());
  return true;
}

bool FileTreeCleaner::DeleteTree(const MString& directory) {
  IFileSystem& files = *platform_.files;
  bool result = true;
  // The search pattern ("\*" after the directory) must fit its fixed room; a longer one isn't searched.
  bool fits = directory.Length() + 2 < kPatternRoom;
  std::vector<std::u16string> names;
  if (fits && files.EnumerateDirectory(directory.View(), names) == 0) {
    for (const std::u16string& name : names) {
      if (IsDotEntry(name)) continue;
      MString path = Child(directory, name);
      // Each subdirectory's answer replaces the one before.
      if (IsDirectory(path)) result = DeleteTree(path);
      else files.Delete(path.View());
    }
  }
  if (files.RemoveDirectory(directory.View()) != 0) return false;
  return result;
}

}  // namespace SASM
