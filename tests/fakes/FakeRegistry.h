#pragma once
// A registry in memory for native tests. Names match without case, missing
// keys and values give 2, a value of another type gives 1804, and any key or
// value can be told to fail with a chosen error. Writes are logged in order.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IRegistry.h"

namespace SASM {

class FakeRegistry : public IRegistry {
 public:
  // One attempted change, whatever its result.
  struct Write {
    std::string operation;  // "CreateKey", "SetString", "SetNarrowString", "SetDword", "BlankValue", "DeleteValue",
                            // "DeleteTree"
    RegistryHive hive;
    std::u16string path;
    std::u16string name;
    int32_t result;
    bool operator==(const Write&) const = default;
  };

  // Every operation on this key answers the error, and so does deleting a tree that holds it.
  void FailKey(RegistryHive hive, std::u16string_view path, int32_t error) {
    keyFailures_[KeyId(hive, path, 0)] = error;
  }
  // Every read, write or delete of this value answers the error.
  void FailValue(RegistryHive hive, std::u16string_view path, std::u16string_view name, int32_t error) {
    valueFailures_[KeyId(hive, path, 0) + u"|" + Upper(name)] = error;
  }
  bool KeyExists(RegistryHive hive, std::u16string_view path) const { return keys_.count(KeyId(hive, path, 0)) != 0; }
  const std::vector<Write>& Writes() const { return writes_; }
  // "SetDword HKLM\Software\X\Name 0", one line per write, for readable expectations.
  std::vector<std::string> WriteLog() const;
  // Access masks in the order the key operations asked for them.
  const std::vector<uint32_t>& Accesses() const { return accesses_; }

  int32_t OpenKey(RegistryHive hive, std::u16string_view path, uint32_t access) override {
    accesses_.push_back(access);
    Key* key = nullptr;
    return Find(KeyId(hive, path, access), key);
  }
  int32_t CreateKey(RegistryHive hive, std::u16string_view path, uint32_t access) override {
    accesses_.push_back(access);
    Key* key = nullptr;
    return Log("CreateKey", hive, path, u"", Create(hive, path, access, key));
  }
  int32_t SetString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::u16string_view data,
                    uint32_t access = RegistryAccess::kAllAccess) override {
    return SetValue("SetString", hive, path, name, access, {Type::String, std::u16string(data), 0});
  }
  int32_t SetNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::string_view data,
                          uint32_t access = RegistryAccess::kAllAccess) override {
    std::u16string wide;
    for (char c : data) wide.push_back(static_cast<unsigned char>(c));
    return SetValue("SetNarrowString", hive, path, name, access, {Type::String, wide, 0});
  }
  int32_t SetDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t data,
                   uint32_t access = RegistryAccess::kAllAccess) override {
    return SetValue("SetDword", hive, path, name, access, {Type::Dword, u"", data});
  }
  int32_t ReadString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::u16string& out,
                     uint32_t access = RegistryAccess::kRead) override {
    const Value* value = nullptr;
    if (int32_t result = GetValue(hive, path, name, access, Type::String, value)) return result;
    out = value->text;
    return RegistryError::kSuccess;
  }
  int32_t ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::string& out,
                           uint32_t access = RegistryAccess::kRead) override;
  int32_t ReadDword(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t& out,
                    uint32_t access = RegistryAccess::kRead) override {
    const Value* value = nullptr;
    if (int32_t result = GetValue(hive, path, name, access, Type::Dword, value)) return result;
    out = value->number;
    return RegistryError::kSuccess;
  }
  int32_t DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                      uint32_t access = RegistryAccess::kAllAccess) override;
  int32_t BlankValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                     uint32_t access) override;
  int32_t DeleteTree(RegistryHive hive, std::u16string_view path) override;
  int32_t EnumerateSubkeys(RegistryHive hive, std::u16string_view path, std::vector<std::u16string>& names,
                           uint32_t access = RegistryAccess::kRead) override;

 private:
  enum class Type { String, Dword };
  struct Value {
    Type type;
    std::u16string text;
    uint32_t number;
  };
  struct Key {
    std::u16string name;                     // last component as created
    std::map<std::u16string, Value> values;  // by upper-cased name
  };

  // The path as given, trimmed, with the 32-bit view applied.
  static std::u16string ViewPath(RegistryHive hive, std::u16string_view path, uint32_t access);
  // Hive and upper-cased view path: "M:SOFTWARE\X".
  static std::u16string KeyId(RegistryHive hive, std::u16string_view path, uint32_t access);
  static std::u16string Upper(std::u16string_view text);
  int32_t KeyFailure(const std::u16string& id) const {
    auto found = keyFailures_.find(id);
    return found == keyFailures_.end() ? RegistryError::kSuccess : found->second;
  }
  int32_t ValueFailure(const std::u16string& id, std::u16string_view name) const {
    auto found = valueFailures_.find(id + u"|" + Upper(name));
    return found == valueFailures_.end() ? RegistryError::kSuccess : found->second;
  }
  // Opens an existing key, or its failure.
  int32_t Find(const std::u16string& id, Key*& key);
  int32_t Create(RegistryHive hive, std::u16string_view path, uint32_t access, Key*& key);
  int32_t SetValue(const char* operation, RegistryHive hive, std::u16string_view path, std::u16string_view name,
                   uint32_t access, Value value);
  int32_t GetValue(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t access, Type type,
                   const Value*& value);
  int32_t Log(const char* operation, RegistryHive hive, std::u16string_view path, std::u16string_view name,
              int32_t result);

  std::map<std::u16string, Key> keys_;  // by KeyId
  std::map<std::u16string, int32_t> keyFailures_;
  std::map<std::u16string, int32_t> valueFailures_;  // KeyId + "|" + upper-cased name
  std::vector<Write> writes_;
  std::vector<uint32_t> accesses_;
};

}  // namespace SASM
