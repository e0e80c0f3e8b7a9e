#pragma once
// Registry seam. Paths are relative to a hive; results are the platform's
// error numbers (0 success, 2 missing, 5 denied, ...).
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SASM {

enum class RegistryHive { Machine, CurrentUser };

namespace RegistryAccess {
constexpr uint32_t kRead = 0x20019;       // KEY_READ
constexpr uint32_t kWrite = 0x20006;      // KEY_WRITE
constexpr uint32_t kAllAccess = 0xF003F;  // KEY_ALL_ACCESS
constexpr uint32_t kWow64Key64 = 0x0100;  // KEY_WOW64_64KEY
constexpr uint32_t kWow64Key32 = 0x0200;  // KEY_WOW64_32KEY
}  // namespace RegistryAccess

namespace RegistryError {
constexpr int32_t kSuccess = 0;
constexpr int32_t kFileNotFound = 2;
constexpr int32_t kAccessDenied = 5;
constexpr int32_t kMoreData = 234;
constexpr int32_t kInvalidDatatype = 1804;  // the value exists with another type
constexpr int32_t kNoMoreItems = 259;
// What deleting a key tree yields when the shell's key deletion cannot be bound.
constexpr int32_t kDeleteUnavailable = -1;
}  // namespace RegistryError

class IRegistry {
 public:
  virtual ~IRegistry() = default;
  // Whether the key opens with this access; the key is closed again at once.
  virtual int32_t OpenKey(RegistryHive hive, std::u16string_view path, uint32_t access) = 0;
  virtual int32_t CreateKey(RegistryHive hive, std::u16string_view path, uint32_t access) = 0;
  // An empty name is the key's default value.
  virtual int32_t SetString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                            std::u16string_view data, uint32_t access = RegistryAccess::kAllAccess) = 0;
  virtual int32_t SetNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                  std::string_view data, uint32_t access = RegistryAccess::kAllAccess) = 0;
  virtual int32_t SetDword(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                           uint32_t data, uint32_t access = RegistryAccess::kAllAccess) = 0;
  virtual int32_t ReadString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                             std::u16string& out, uint32_t access = RegistryAccess::kRead) = 0;
  virtual int32_t ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                   std::string& out, uint32_t access = RegistryAccess::kRead) = 0;
  virtual int32_t ReadDword(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                            uint32_t& out, uint32_t access = RegistryAccess::kRead) = 0;
  virtual int32_t DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                              uint32_t access = RegistryAccess::kAllAccess) = 0;
  // Overwrites the value of an existing key as a narrow string with no data at all (not even a terminator).
  virtual int32_t BlankValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                             uint32_t access) = 0;
  // The key with all its subkeys and values.
  virtual int32_t DeleteTree(RegistryHive hive, std::u16string_view path) = 0;
  virtual int32_t EnumerateSubkeys(RegistryHive hive, std::u16string_view path,
                                   std::vector<std::u16string>& names,
                                   uint32_t access = RegistryAccess::kRead) = 0;
};

}  // namespace SASM
