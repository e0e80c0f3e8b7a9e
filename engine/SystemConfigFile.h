#pragma once
// The machine's "key = value" file, hms.cfg, read once into a map of byte
// strings. Keys are matched byte for byte, so case matters.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "engine/IFileSystem.h"

namespace SASM {

class SystemConfigFile {
 public:
  // How the file's first bytes were taken.
  enum State : int32_t { kAbsent = -1, kPlain = 0, kUtf8Marked = 1, kUtf16Marked = 2 };

  // Reads the file at once; an unreadable file leaves the map empty.
  SystemConfigFile(IFileSystem& files, std::u16string_view path);

  State GetState() const { return state_; }
  // The value, or an empty text when the key is absent.
  std::string Get(std::string_view key) const;
  size_t Count() const { return values_.size(); }

  // "true", "t", "yes" and "y" in any ASCII case, or any number whose decimal value isn't 0.
  static bool IsTrue(std::string_view value);

 private:
  void Parse(std::string_view text);
  void AcceptLine(std::string_view line);

  State state_ = kAbsent;
  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace SASM
