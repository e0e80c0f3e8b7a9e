#include "tests/fakes/FakeRegistry.h"

#include "engine/MString.h"

namespace SASM {
namespace {

constexpr int32_t kSuccess = RegistryError::kSuccess;
constexpr int32_t kMissing = RegistryError::kFileNotFound;

std::u16string_view TrimSeparators(std::u16string_view path) {
  while (!path.empty() && path.front() == u'\\') path.remove_prefix(1);
  while (!path.empty() && path.back() == u'\\') path.remove_suffix(1);
  return path;
}

std::string Utf8(std::u16string_view text) { return MString(text).ToUtf8(); }

}  // namespace

std::u16string FakeRegistry::Upper(std::u16string_view text) {
  std::u16string result(text);
  for (char16_t& unit : result) {
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 0x20);
  }
  return result;
}

std::u16string FakeRegistry::ViewPath(RegistryHive hive, std::u16string_view path, uint32_t access) {
  std::u16string view(TrimSeparators(path));
  std::u16string upper = Upper(view);
  // The 32-bit view of the machine's software key lives under Wow6432Node, as on a 64-bit system.
  std::u16string_view software = u"SOFTWARE";
  if (hive == RegistryHive::Machine && (access & RegistryAccess::kWow64Key32) && upper.starts_with(software) &&
      (upper.size() == software.size() || upper[software.size()] == u'\\') &&
      !upper.starts_with(u"SOFTWARE\\WOW6432NODE"))
    view.insert(software.size(), u"\\Wow6432Node");
  return view;
}

std::u16string FakeRegistry::KeyId(RegistryHive hive, std::u16string_view path, uint32_t access) {
  return (hive == RegistryHive::Machine ? u"M:" : u"U:") + Upper(ViewPath(hive, path, access));
}

std::vector<std::string> FakeRegistry::WriteLog() const {
  std::vector<std::string> lines;
  for (const Write& write : writes_) {
    std::string line =
        write.operation + (write.hive == RegistryHive::Machine ? " HKLM\\" : " HKCU\\") + Utf8(write.path);
    if (write.operation != "CreateKey" && write.operation != "DeleteTree") line += " [" + Utf8(write.name) + "]";
    lines.push_back(line + " " + std::to_string(write.result));
  }
  return lines;
}

int32_t FakeRegistry::Find(const std::u16string& id, Key*& key) {
  if (int32_t failure = KeyFailure(id)) return failure;
  auto found = keys_.find(id);
  if (found == keys_.end()) {
    // A hive's root always exists.
    if (id.size() != 2) return kMissing;
    found = keys_.emplace(id, Key{}).first;
  }
  key = &found->second;
  return kSuccess;
}

int32_t FakeRegistry::Create(RegistryHive hive, std::u16string_view path, uint32_t access, Key*& key) {
  std::u16string id = KeyId(hive, path, access);
  if (int32_t failure = KeyFailure(id)) return failure;
  // Every missing key on the way is created, as the platform does; names keep their case.
  std::u16string view = ViewPath(hive, path, access);
  for (size_t at = 0; at <= view.size(); ++at) {
    if (at != view.size() && view[at] != u'\\') continue;
    std::u16string prefix = id.substr(0, 2 + at);
    if (at == 0 || keys_.count(prefix)) continue;
    size_t start = view.find_last_of(u'\\', at - 1);
    start = start == std::u16string::npos ? 0 : start + 1;
    keys_.emplace(prefix, Key{view.substr(start, at - start), {}});
  }
  key = &keys_[id];
  return kSuccess;
}

int32_t FakeRegistry::Log(const char* operation, RegistryHive hive, std::u16string_view path, std::u16string_view name,
                          int32_t result) {
  writes_.push_back({operation, hive, std::u16string(path), std::u16string(name), result});
  return result;
}

int32_t FakeRegistry::SetValue(const char* operation, RegistryHive hive, std::u16string_view path,
                               std::u16string_view name, uint32_t access, Value value) {
  accesses_.push_back(access);
  std::u16string id = KeyId(hive, path, access);
  Key* key = nullptr;
  int32_t result = Create(hive, path, access, key);
  if (result == kSuccess) result = ValueFailure(id, name);
  if (result == kSuccess) key->values[Upper(name)] = std::move(value);
  return Log(operation, hive, path, name, result);
}

int32_t FakeRegistry::GetValue(RegistryHive hive, std::u16string_view path, std::u16string_view name, uint32_t access,
                               Type type, const Value*& value) {
  accesses_.push_back(access);
  std::u16string id = KeyId(hive, path, access);
  Key* key = nullptr;
  if (int32_t result = Find(id, key)) return result;
  if (int32_t failure = ValueFailure(id, name)) return failure;
  auto found = key->values.find(Upper(name));
  if (found == key->values.end()) return kMissing;
  if (found->second.type != type) return RegistryError::kInvalidDatatype;
  value = &found->second;
  return kSuccess;
}

int32_t FakeRegistry::ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                       std::string& out, uint32_t access) {
  const Value* value = nullptr;
  if (int32_t result = GetValue(hive, path, name, access, Type::String, value)) return result;
  // The system code page of this fake is Latin-1; anything beyond it reads as "?".
  out.clear();
  for (char16_t unit : value->text) out.push_back(unit < 256 ? static_cast<char>(unit) : '?');
  return kSuccess;
}

int32_t FakeRegistry::BlankValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                 uint32_t access) {
  accesses_.push_back(access);
  std::u16string id = KeyId(hive, path, access);
  Key* key = nullptr;
  int32_t result = Find(id, key);
  if (result == kSuccess) result = ValueFailure(id, name);
  if (result == kSuccess) key->values[Upper(name)] = {Type::String, u"", 0};
  return Log("BlankValue", hive, path, name, result);
}

int32_t FakeRegistry::DeleteValue(RegistryHive hive, std::u16string_view path, std::u16string_view name,
                                  uint32_t access) {
  accesses_.push_back(access);
  std::u16string id = KeyId(hive, path, access);
  Key* key = nullptr;
  int32_t result = Find(id, key);
  if (result == kSuccess) result = ValueFailure(id, name);
  if (result == kSuccess) result = key->values.erase(Upper(name)) ? kSuccess : kMissing;
  return Log("DeleteValue", hive, path, name, result);
}

int32_t FakeRegistry::DeleteTree(RegistryHive hive, std::u16string_view path) {
  std::u16string id = KeyId(hive, path, 0);
  Key* key = nullptr;
  int32_t result = Find(id, key);
  if (result == kSuccess) {
    std::u16string below = id + u"\\";
    for (const auto& [failing, error] : keyFailures_) {
      if (failing.starts_with(below)) {
        result = error;
        break;
      }
    }
  }
  if (result == kSuccess) {
    keys_.erase(id);
    for (auto it = keys_.lower_bound(id + u"\\"); it != keys_.end() && it->first.starts_with(id + u"\\");)
      it = keys_.erase(it);
  }
  return Log("DeleteTree", hive, path, u"", result);
}

int32_t FakeRegistry::EnumerateSubkeys(RegistryHive hive, std::u16string_view path, std::vector<std::u16string>& names,
                                       uint32_t access) {
  std::u16string id = KeyId(hive, path, access);
  Key* key = nullptr;
  if (int32_t result = Find(id, key)) return result;
  std::u16string below = id.size() == 2 ? id : id + u"\\";
  for (auto it = keys_.lower_bound(below); it != keys_.end() && it->first.starts_with(below); ++it) {
    if (it->first.size() > below.size() && it->first.find(u'\\', below.size()) == std::u16string::npos)
      names.push_back(it->second.name);
  }
  return kSuccess;
}

}  // namespace SASM
