#include "broker/BrokerRegistration.h"

#include "broker/BrokerIdentities.h"

namespace SASM {
namespace {

constexpr std::u16string_view kClassesRoot = u"Software\\Classes\\CLSID\\";
constexpr std::u16string_view kLibrariesRoot = u"Software\\Classes\\TypeLib\\";
constexpr std::u16string_view kInterfacesRoot = u"Software\\Classes\\Interface\\";
constexpr std::u16string_view kElevationPolicy =
    u"Software\\Microsoft\\Internet Explorer\\Low Rights\\ElevationPolicy\\{FAF199D2-BFA7-4394-A4DE-044A08E59B32}";
constexpr std::u16string_view kLocalServer = u"LocalServer32";
// The platform's automation marshaller: calls are marshalled from the type library.
constexpr std::string_view kAutomationMarshaller = "{00020424-0000-0000-C000-000000000046}";

enum class Key { Class, Interface, Library, Elevation };

// Where a row's data comes from.
enum class Source { Text, LibraryId, ServerPath, LocalizedString, AppPath, AppName };

struct Row {
  Key key;
  std::u16string_view subKey;
  std::u16string_view name;  // empty: the default value
  Source source;
  std::string_view text = {};
};

constexpr Row kRows[] = {
    {Key::Class, u"", u"", Source::Text, "LumenBroker"},
    {Key::Class, kLocalServer, u"", Source::ServerPath},
    {Key::Class, u"TypeLib", u"", Source::LibraryId},
    {Key::Class, u"", u"LocalizedString", Source::LocalizedString},
    {Key::Class, u"Elevation", u"Enabled", Source::Text, "#1"},
    {Key::Interface, u"", u"", Source::Text, "ILumenBroker6"},
    {Key::Interface, u"ProxyStubClsid32", u"", Source::Text, kAutomationMarshaller},
    {Key::Interface, u"TypeLib", u"", Source::LibraryId},
    {Key::Interface, u"TypeLib", u"Version", Source::Text, "1.0"},
    {Key::Library, u"", u"", Source::Text, ""},
    {Key::Library, u"1.0", u"", Source::Text, "LumenBroker"},
    {Key::Library, u"1.0\\FLAGS", u"", Source::Text, "0"},
    // HELPDIR names the whole file, as it always has.
    {Key::Library, u"1.0\\HELPDIR", u"", Source::ServerPath},
    {Key::Library, u"1.0\\0\\win32", u"", Source::ServerPath},
    {Key::Elevation, u"", u"Policy", Source::Text, "#3"},
    {Key::Elevation, u"", u"AppPath", Source::AppPath},
    {Key::Elevation, u"", u"AppName", Source::AppName},
};

std::string Narrow(std::u16string_view ascii) { return std::string(ascii.begin(), ascii.end()); }

std::u16string ClassKey(const BrokerGeneration& generation) {
  return std::u16string(kClassesRoot) + std::u16string(generation.classId);
}

std::u16string KeyPath(Key key) {
  switch (key) {
    case Key::Class:
      return ClassKey(BrokerIdentities::kServed);
    case Key::Interface:
      return std::u16string(kInterfacesRoot) + std::u16string(BrokerIdentities::kServed.interfaceId);
    case Key::Library:
      return std::u16string(kLibrariesRoot) + std::u16string(BrokerIdentities::kLibraryId);
    case Key::Elevation:
      return std::u16string(kElevationPolicy);
  }
  return {};
}

// The server's directory and file name for the elevation policy, from the value
// that LocalServer32 now holds, or from the given path when it can't be read.
struct ServerLocation {
  std::string directory;
  std::string file;
};

ServerLocation LocateServer(IRegistry& registry, const char* serverPath) {
  std::string path;
  std::u16string localServer = KeyPath(Key::Class) + u"\\" + std::u16string(kLocalServer);
  if (registry.ReadNarrowString(RegistryHive::Machine, localServer, u"", path) != RegistryError::kSuccess ||
      path.size() + 1 > BrokerRegistration::kReadBackBytes)
    path = serverPath;
  size_t cut = path.find_last_of("/\\");
  if (cut == std::string::npos) return {path, path};
  return {path.substr(0, cut), path.substr(cut + 1)};
}

}  // namespace

bool BrokerRegistration::SetRegistryValue(IRegistry& registry, std::u16string_view key, std::u16string_view subKey,
                                          std::u16string_view name, std::string_view data) {
  std::u16string path(key);
  if (!subKey.empty()) path.append(u"\\").append(subKey);
  int32_t result;
  if (data.size() == 2 && data[0] == '#') {
    uint32_t number = static_cast<uint32_t>(static_cast<int32_t>(data[1]) - '0');
    result = registry.SetDword(RegistryHive::Machine, path, name, number, RegistryAccess::kAllAccess);
  } else {
    result = registry.SetNarrowString(RegistryHive::Machine, path, name, data, RegistryAccess::kAllAccess);
  }
  return result == RegistryError::kSuccess;
}

void BrokerRegistration::WriteBrokerRegistration(IRegistry& registry, const char* serverPath, bool install) {
  if (!install) {
    for (Key key : {Key::Class, Key::Library, Key::Interface, Key::Elevation})
      registry.DeleteTree(RegistryHive::Machine, KeyPath(key));
    return;
  }
  if (!serverPath) return;

  bool located = false;
  ServerLocation location;
  for (const Row& row : kRows) {
    std::string data;
    switch (row.source) {
      case Source::Text:
        data = row.text;
        break;
      case Source::LibraryId:
        data = Narrow(BrokerIdentities::kLibraryId);
        break;
      case Source::ServerPath:
        data = serverPath;
        break;
      case Source::LocalizedString:
        data = std::string("@") + serverPath + ",-101";
        break;
      case Source::AppPath:
      case Source::AppName:
        if (!located) location = LocateServer(registry, serverPath);
        located = true;
        data = row.source == Source::AppPath ? location.directory : location.file;
        break;
    }
    if (!SetRegistryValue(registry, KeyPath(row.key), row.subKey, row.name, data)) return;
  }
}

bool BrokerRegistration::FindBrokerServerPath(IRegistry& registry, std::string& path) {
  for (auto generation = std::rbegin(BrokerIdentities::kGenerations);
       generation != std::rend(BrokerIdentities::kGenerations); ++generation) {
    std::u16string key = ClassKey(*generation) + u"\\" + std::u16string(kLocalServer);
    std::string value;
    if (registry.ReadNarrowString(RegistryHive::Machine, key, u"", value) == RegistryError::kSuccess) {
      path = value;
      return true;
    }
  }
  return false;
}

}  // namespace SASM
