#pragma once
#include <memory>

#include "engine/ITerminalSessions.h"

namespace SASM {

class WtsapiDllHelper;

// The session functions of "wtsapi32.dll", loaded from the system directory on first use.
class Win32TerminalSessions : public ITerminalSessions {
 public:
  Win32TerminalSessions();
  ~Win32TerminalSessions() override;

  bool Available() override;
  bool EnumerateSessions(std::vector<uint32_t>& sessionIds, uint32_t& error) override;
  bool QueryConnectState(uint32_t sessionId, uint32_t& state, uint32_t& error) override;
  uint32_t QueryText(uint32_t sessionId, uint32_t infoClass, std::u16string& text) override;
  uint32_t ActiveConsoleSessionId() override;

 private:
  WtsapiDllHelper& Helper();

  std::unique_ptr<WtsapiDllHelper> helper_;
};

}  // namespace SASM
