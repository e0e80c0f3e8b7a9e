#include "install/ReportingRegistry.h"

#include "engine/ErrorCodes.h"
#include "engine/Reporter.h"

namespace SASM {

bool ReportingRegistry::SetString(RegistryHive hive, const MString& key, const MString& name, const MString& data) {
  int32_t error = registry_.SetString(hive, key.View(), name.View(), data.View());
  if (error == 0) return true;
  Reporter::ReportKeyValueError(host_, Severity::kLogged, ErrorCode::kRegistryWriteFailed, key, name,
                                static_cast<uint32_t>(error));
  return false;
}

bool ReportingRegistry::SetDword(RegistryHive hive, const MString& key, const MString& name, uint32_t data) {
  int32_t error = registry_.SetDword(hive, key.View(), name.View(), data);
  if (error == 0) return true;
  Reporter::ReportKeyValueErrorNumberForm(host_, Severity::kLogged, ErrorCode::kRegistryWriteFailed, key, name,
                                          static_cast<uint32_t>(error));
  return false;
}

bool ReportingRegistry::Write(const Value& value) {
  return value.isNumber ? SetDword(value.hive, value.key, value.name, value.number)
                        : SetString(value.hive, value.key, value.name, value.text);
}

bool ReportingRegistry::WriteSequence(std::span<const Value> values) {
  for (const Value& value : values) {
    if (!Write(value)) return false;
  }
  return true;
}

bool ReportingRegistry::ReadString(RegistryHive hive, const MString& key, const MString& name, MString& out) {
  std::u16string text;
  int32_t error = registry_.ReadString(hive, key.View(), name.View(), text);
  if (error != 0) {
    Reporter::ReportKeyValueError(host_, Severity::kLogged, ErrorCode::kRegistryReadFailed, key, name,
                                  static_cast<uint32_t>(error));
    return false;
  }
  out = MString(std::u16string_view(text));
  return true;
}

bool ReportingRegistry::ReadDword(RegistryHive hive, const MString& key, const MString& name, uint32_t& out) {
  int32_t error = registry_.ReadDword(hive, key.View(), name.View(), out);
  if (error == 0) return true;
  Reporter::ReportKeyValueError(host_, Severity::kLogged, ErrorCode::kRegistryReadFailed, key, name,
                                static_cast<uint32_t>(error));
  return false;
}

bool ReportingRegistry::DeleteValue(RegistryHive hive, const MString& key, const MString& name) {
  int32_t error = registry_.DeleteValue(hive, key.View(), name.View());
  if (error == 0) return true;
  Reporter::ReportKeyValueError(host_, Severity::kLogged, ErrorCode::kRegistryDeleteFailed, key, name,
                                static_cast<uint32_t>(error));
  return false;
}

bool ReportingRegistry::DeleteKey(RegistryHive hive, const MString& key) {
  int32_t error = registry_.DeleteTree(hive, key.View());
  if (error == 0) return true;
  Reporter::ReportKeyError(host_, Severity::kLogged, ErrorCode::kRegistryDeleteFailed, key,
                           static_cast<uint32_t>(error));
  return false;
}

}  // namespace SASM
