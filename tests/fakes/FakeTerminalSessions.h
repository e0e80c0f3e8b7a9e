#pragma once
// Terminal sessions for native tests: a table of sessions with their connect
// states, names and failures, and a console session id.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "engine/ITerminalSessions.h"

namespace SASM {

class FakeTerminalSessions : public ITerminalSessions {
 public:
  struct Session {
    uint32_t id;
    uint32_t state;           // connect state
    uint32_t stateError = 0;  // non-zero: the state query fails with it
    std::u16string user;
    std::u16string domain;
    uint32_t userError = 0;
    uint32_t domainError = 0;
  };

  void AddSession(Session session) { sessions_.push_back(std::move(session)); }
  void FailEnumeration(uint32_t error) { enumerationError_ = error; }
  void SetConsoleSession(uint32_t id) { console_ = id; }
  // Names of a session that isn't listed, such as the console session.
  void SetNames(uint32_t id, std::u16string user, std::u16string domain) {
    unlisted_[id] = Session{id, SessionInfo::kActive, 0, std::move(user), std::move(domain)};
  }
  // The session ids the text queries named, in order.

  bool Available() override { return true; }
  bool EnumerateSessions(std::vector<uint32_t>& sessionIds, uint32_t& error) override;
  bool QueryConnectState(uint32_t sessionId, uint32_t& state, uint32_t& error) override;
  uint32_t QueryText(uint32_t sessionId, uint32_t infoClass, std::u16string& text) override;
  uint32_t ActiveConsoleSessionId() override { return console_; }

 private:
  const Session* Find(uint32_t id) const;

  std::vector<Session> sessions_;
  std::map<uint32_t, Session> unlisted_;
  uint32_t enumerationError_ = 0;
  uint32_t console_ = 1;
};

}  // namespace SASM
