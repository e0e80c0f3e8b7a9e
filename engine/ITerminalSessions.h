#pragma once
// Seam for the terminal session functions, bound at run time. Errors are the
// thread's last error as the platform left it.
#include <cstdint>
#include <string>
#include <vector>

namespace SASM {

namespace SessionInfo {
constexpr uint32_t kUserName = 5;
constexpr uint32_t kDomainName = 7;
constexpr uint32_t kConnectState = 8;
// The connect state of a session in use.
constexpr uint32_t kActive = 0;
}  // namespace SessionInfo

class ITerminalSessions {
 public:
  virtual ~ITerminalSessions() = default;
  // False when the library or any of the four functions can't be found.
  virtual bool Available() = 0;
  // Sessions of the local server, in the platform's order.
  virtual bool EnumerateSessions(std::vector<uint32_t>& sessionIds, uint32_t& error) = 0;
  virtual bool QueryConnectState(uint32_t sessionId, uint32_t& state, uint32_t& error) = 0;
  // A text class (user or domain name), empty when the query fails; answers the last error after the query.
  virtual uint32_t QueryText(uint32_t sessionId, uint32_t infoClass, std::u16string& text) = 0;
  virtual uint32_t ActiveConsoleSessionId() = 0;
};

}  // namespace SASM
