#pragma once
#include "engine/IRegistry.h"

namespace SASM {

class LateBoundFunction;

class Win32Registry : public IRegistry {
 public:
  // The process's binding of the shell's SHDeleteKeyW.
  static LateBoundFunction& DeleteKeyFunction();

  // deleteKey serves DeleteTree; when it finds no function the delete yields -1.
  explicit Win32Registry(LateBoundFunction& deleteKey = DeleteKeyFunction()) : deleteKey_(deleteKey) {}

  int32_t OpenKey(RegistryHive hive, std::u16string_view path, uint32_t access) override;
  int32_t CreateKey(RegistryHive hive, std::u16string_view path, uint32_t access) override;
  int32_t SetString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                    std::u16string_view data, uint32_t access = RegistryAccess::kAllAccess) override;
  int32_t SetNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                          std::string_view data, uint32_t access = RegistryAccess::kAllAccess) override;
  int32_t SetDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t data,
                   uint32_t access = RegistryAccess::kAllAccess) override;
  int32_t ReadString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::u16string& out,
                     uint32_t access = RegistryAccess::kRead) override;
  int32_t ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                           std::string& out, uint32_t access = RegistryAccess::kRead) override;
  int32_t ReadDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t& out,
                    uint32_t access = RegistryAccess::kRead) override;
  int32_t DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                      uint32_t access = RegistryAccess::kAllAccess) override;
  int32_t BlankValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                     uint32_t access) override;
  int32_t DeleteTree(RegistryHive hive, std::u16string_view path) override;
  int32_t EnumerateSubkeys(RegistryHive hive, std::u16string_view path, std::vector<std::u16string>& names,
                           uint32_t access = RegistryAccess::kRead) override;

 private:
  LateBoundFunction& deleteKey_;
};

}  // namespace SASM
