#pragma once
// Registry operations of installation that report what failed: writes with
// code 1035, reads with 1036, deletions with 1037, each in its text form.
#include <cstdint>
#include <span>

#include "engine/IRegistry.h"
#include "engine/MString.h"

namespace SASM {

class HostCallbacks;

class ReportingRegistry {
 public:
  // One value of a write sequence.
  struct Value {
    RegistryHive hive;
    MString key;
    MString name;
    bool isNumber;
    MString text;
    uint32_t number;
  };

  ReportingRegistry(HostCallbacks& host, IRegistry& registry) : host_(host), registry_(registry) {}

  bool SetString(RegistryHive hive, const MString& key, const MString& name, const MString& data);
  bool SetDword(RegistryHive hive, const MString& key, const MString& name, uint32_t data);
  bool Write(const Value& value);
  // Writes in order and stops at the first failure.
  bool WriteSequence(std::span<const Value> values);

  // A failed read counts as absent.
  bool ReadString(RegistryHive hive, const MString& key, const MString& name, MString& out);
  bool ReadDword(RegistryHive hive, const MString& key, const MString& name, uint32_t& out);

  bool DeleteValue(RegistryHive hive, const MString& key, const MString& name);
  // The key with its subkeys.
  bool DeleteKey(RegistryHive hive, const MString& key);

  IRegistry& Registry() const { return registry_; }

 private:
  HostCallbacks& host_;
  IRegistry& registry_;
};

}  // namespace SASM
