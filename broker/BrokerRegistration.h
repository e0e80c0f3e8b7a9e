#pragma once
// The broker's COM registration under the machine hive: the class, its
// interface, the type library and the browser's elevation policy for the server.
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/IRegistry.h"

namespace SASM {

class BrokerRegistration {
 public:
  // How much of LocalServer32 is read back for the elevation policy's path.
  static constexpr uint32_t kReadBackBytes = 512;

  // With install, writes the seventeen values in order and stops silently at the
  // first failure; a null path writes nothing. Without install, deletes the
  // class, library, interface and policy keys, ignoring failures and the path.
  static void WriteBrokerRegistration(IRegistry& registry, const char* serverPath, bool install);
  // The LocalServer32 default value of the newest generation that has one.
  static bool FindBrokerServerPath(IRegistry& registry, std::string& path);
  // One value of key\subKey under the machine hive, creating the key. Data of
  // exactly "#" and one character is a DWORD of that character minus '0';
  // anything else is a string. False when the key or the value fails.
  static bool SetRegistryValue(IRegistry& registry, std::u16string_view key, std::u16string_view subKey,
                               std::u16string_view name, std::string_view data);
};

}  // namespace SASM
