#pragma once
// What every broker benchmark needs around its measurements: the server
// registered for the reference host beside the benchmark, with the test proxy
// that marshals the interface's newer generations under Wine; activation; a
// check that no server outlives the run; and a directory the broker may
// write to.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <string>
#include <vector>

#include "engine/win32/BrokerProxyRegistration.h"
#include "engine/win32/ComPtr.h"

namespace SASM {

class BenchBrokerSession {
 public:
  // Registers the server and the proxy; removes both, every key of them, when it goes.
  BenchBrokerSession();
  BenchBrokerSession(const BenchBrokerSession&) = delete;
  BenchBrokerSession& operator=(const BenchBrokerSession&) = delete;
  ~BenchBrokerSession();

  bool ready() const { return proxy_.registered(); }
  // A directory under the player data root where the policy lets the broker
  // write; the levels made for it are removed when the session goes. Empty
  // when it can't be made.
  std::wstring PlayerDataDirectory();
  static HRESULT Activate(ComPtr<ILumenBroker6>& broker);
  // Waits for every running copy of the reference host to end.
  static bool ServersEnded();

  static std::wstring BinaryDirectory();

 private:
  struct ServerRegistration {
    ServerRegistration();
    ~ServerRegistration();
  };

  // Declared in the order of registration: the proxy goes over the server's entries and goes first.
  ServerRegistration server_;
  BrokerProxyRegistration proxy_;
  std::vector<std::wstring> madeDirectories_;
};

}  // namespace SASM
