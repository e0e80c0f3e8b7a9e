#pragma once
// Reaching the broker server as its clients do, and registering it for tools
// and tests that start one from the build.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <string>

#include "engine/win32/ComPtr.h"

namespace SASM {

class BrokerActivation {
 public:
  // A server quits on its last release and races with the next activation
  // (0x800706B5, 0x800706BE, E_NOINTERFACE); only an unregistered class is final.
  template <typename Attempt>
  static HRESULT WithRetries(Attempt attempt) {
    HRESULT result = E_FAIL;
    for (int i = 0; i < 20; ++i) {
      result = attempt();
      if (SUCCEEDED(result) || result == REGDB_E_CLASSNOTREG) return result;
      Sleep(50);
    }
    return result;
  }

  // A new broker object of the newest generation in a local server.
  static HRESULT Activate(ComPtr<ILumenBroker6>& broker);
  // The server's registration as installation writes it, for the host at serverPath.
  static void Register(const std::wstring& serverPath);
  // Removes the registration, and the interface keys of every generation and
  // the copies in the 32-bit view that registration helpers leave behind.
  static void Unregister();
};

}  // namespace SASM
