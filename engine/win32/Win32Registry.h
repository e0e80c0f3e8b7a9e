#pragma once
#include "engine/IRegistry.h"

namespace SASM {

class Win32Registry : public IRegistry {
 public:
  int32_t OpenKey(RegistryHive hive, std::u16string_view path, uint32_t access) override;
  int32_t CreateKey(RegistryHive hive, std::u16string_view path, uint32_t access) override;
  int32_t SetString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                    std::u16string_view data, uint32_t access) override;
  int32_t SetNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                          std::string_view data, uint32_t access) override;
  int32_t SetDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t data,
                   uint32_t access) override;
  int32_t ReadString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::u16string& out,
                     uint32_t access) override;
  int32_t ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                           std::string& out, uint32_t access) override;
  int32_t ReadDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t& out,
                    uint32_t access) override;
  int32_t DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                      uint32_t access) override;
  int32_t DeleteTree(RegistryHive hive, std::u16string_view path) override;
  int32_t EnumerateSubkeys(RegistryHive hive, std::u16string_view path, std::vector<std::u16string>& names,
                           uint32_t access) override;
};

}  // namespace SASM
